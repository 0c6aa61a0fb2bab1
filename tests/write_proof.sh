#!/usr/bin/env bash
# What users own survives: each kind of file is written by the tool while the disk is full, the file may not grow, the folder
# is read-only, or the program is killed at a random moment. The old file or the whole new one is there afterwards, a
# write that failed is reported, and the next one succeeds. Needs a system that lets users mount in a namespace of their own.
#   tests/write_proof.sh [KILLS]     kills for each kind of file, else 25
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
if [ "${WRITE_PROOF_INSIDE:-}" != 1 ]; then
  export WRITE_PROOF_INSIDE=1
  exec unshare -rm "$0" "$@"
fi

tool=$(realpath "${BRENVOLT:-out/bin/brenvolt}")
kills=${1:-25}
disk=$(mktemp -d)
quiet=$(mktemp -d)
trap 'umount "$disk" 2>/dev/null || true; rm -rf "$disk" "$quiet"' EXIT
mount -t tmpfs -o size=16m none "$disk"
export HOME=$quiet XDG_CONFIG_HOME= XDG_STATE_HOME= XDG_CACHE_HOME= BRENVOLT_DB= LC_ALL=C

cp -r site "$quiet/site"
cp -r site/zan_brenvolt.xls site/zan_brenvolt.xml "$disk/"
"$tool" workbook unpack "$disk/zan_brenvolt.xls" "$quiet/sheets" >/dev/null
sed -i 's/Line 1/Line one/' "$quiet/sheets/M3_DOL.csv"
"$tool" draw --site "$quiet/site" --circuit "Three-phase motors" --type "Direct on line" --history "Pump 10 HP" \
  --out "$quiet/motor.json" >/dev/null

# name | the file | the command that writes it (in the folder of the disk)
kinds=(
  "drawing|a.json|'$tool' lisp --site '$quiet/site' --drawing '$quiet/motor.json' --save a.json -e '(draw-line (list 0 0) (list NUMBER 1))'"
  "history|zan_brenvolt.xml|'$tool' draw --site '$quiet/site' --workbook zan_brenvolt.xls --circuit 'Three-phase motors' --type 'Direct on line' --history 'Pump 10 HP' --save-history 'Proof NUMBER' --out '$quiet/other.json'"
  "workbook|b.xls|sed -i 's/Line [^,]*/Line NUMBER/' '$quiet/sheets/M3_DOL.csv' && '$tool' workbook pack '$quiet/sheets' b.xls"
  "report|r.xls|'$tool' report parts '$quiet/motor.json' --format xls --out r.xls"
  "picture|p.svg|'$tool' lisp --site '$quiet/site' --drawing '$quiet/motor.json' --svg p.svg -e '(draw-line (list 0 0) (list NUMBER 1))'"
  "tables|t.db|'$tool' import t.db '$quiet/site/tables'"
)

faults=0
fail() {
  echo "broken: $*"
  faults=$((faults + 1))
}
run() { (cd "$disk" && eval "${1//NUMBER/$2}") >"$quiet/out" 2>&1; }
sum() { [ -e "$disk/$1" ] && sha256sum <"$disk/$1" || echo none; }
fill() { # leaves so many KiB
  rm -f "$disk/filler"
  local free
  free=$(df --output=avail -k "$disk" | tail -1)
  [ "$free" -le "$1" ] || head -c $(((free - $1) * 1024)) /dev/zero >"$disk/filler"
}
# A write that cannot succeed: the file is as before, the message names it.
refused() {
  local how=$1 name=$2 file=$3 before=$4 status=$5
  [ "$status" -ne 0 ] || fail "$name, $how: the write counts as done"
  [ "$(sum "$file")" = "$before" ] || fail "$name, $how: the file has changed"
  [ -s "$quiet/out" ] || [ "$status" -gt 128 ] || fail "$name, $how: nothing is reported"
}

for kind in "${kinds[@]}"; do
  IFS='|' read -r name file command <<<"$kind"
  run "$command" 1 || { fail "$name: cannot be written at all: $(cat "$quiet/out")"; continue; }
  before=$(sum "$file")
  # Tables go into a new file: an existing database is changed by transactions.
  if [ "$name" = tables ]; then command=${command/t.db/t2.db} file=t2.db before=none; fi

  for left in 0 4; do
    fill "$left"
    status=0; run "$command" 2 || status=$?
    refused "a disk with $left KiB left" "$name" "$file" "$before" "$status"
    rm -f "$disk/filler"
  done

  status=0; (ulimit -f 1; run "$command" 3) || status=$?
  refused "a file that may not grow" "$name" "$file" "$before" "$status"

  mount -o remount,ro "$disk"
  status=0; run "$command" 4 || status=$?
  mount -o remount,rw "$disk"
  refused "a read-only folder" "$name" "$file" "$before" "$status"

  # Killed: the file is the old one or the new one.
  start=$(date +%s%N); run "$command" 5 || fail "$name: the write after the faults: $(cat "$quiet/out")"
  took=$((($(date +%s%N) - start) / 1000000 + 1))
  lost=0
  for ((kill = 0; kill < kills; ++kill)); do
    [ "$name" != tables ] || rm -f "$disk/$file"
    before=$(sum "$file")
    setsid bash -c "cd '$disk' && ${command//NUMBER/$((kill + 6))}" >"$quiet/out" 2>&1 &
    job=$!
    sleep "$(printf '0.%03d' $((RANDOM % (took < 999 ? took : 999))))"
    kill -9 -- "-$job" 2>/dev/null || true
    wait "$job" 2>/dev/null || true
    after=$(sum "$file")
    [ "$after" != "$before" ] || continue
    case $name in
    history) "$tool" history list --site "$quiet/site" --workbook "$disk/zan_brenvolt.xls" >/dev/null 2>&1 || lost=$((lost + 1)) ;;
    tables) "$tool" sql "$disk/$file" 'SELECT COUNT(*) FROM [OPT_NEC]' >/dev/null 2>&1 || lost=$((lost + 1)) ;;
    *) # the same command gives the same bytes
      run "$command" $((kill + 6)) && [ "$(sum "$file")" = "$after" ] || lost=$((lost + 1)) ;;
    esac
  done
  [ "$lost" = 0 ] || fail "$name: $lost of $kills kills left a file that is neither the old nor the new one"
  [ "$name" != tables ] || rm -f "$disk/$file"
  run "$command" 99 || fail "$name: the write after $kills kills: $(cat "$quiet/out")"
  stray=$(find "$disk" -maxdepth 1 -name "*$file?*" ! -name '*.lock' ! -name '*.log*' ! -name '*journal*' | head -3 | tr '\n' ' ')
  echo "$name: full disk, limit, read-only and $kills kills survived${stray:+ (beside it: $stray)}"
done
[ "$faults" = 0 ] || { echo "$faults faults"; exit 1; }
