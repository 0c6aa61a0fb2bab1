#!/usr/bin/env bash
# What users own survives: each kind of file is written by the tool while the disk is full, the file may not grow, or the
# folder is read-only. The old file is there afterwards, the failed write is reported, and the next one succeeds. Killed
# programs are in tests/circuits/write_proof_test.cpp. Needs a system that lets users mount in a namespace of their own.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
if [ "${WRITE_PROOF_INSIDE:-}" != 1 ]; then
  export WRITE_PROOF_INSIDE=1
  exec unshare -rm "$0" "$@"
fi

tool=$(realpath "${BRENVOLT:-out/bin/brenvolt}")
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

cat >"$quiet/pick.json" <<'JSON'
{"format": "brenvolt-answers", "version": 1, "steps": [
  {"dialog": "ZanDlgMotorSelect", "do": [{"select": "grid", "row": ROW}, {"press": "ok"}]}]}
JSON
pick="sed 's/ROW/NUMBER/' '$quiet/pick.json' >'$quiet/pick-NUMBER.json' && '$tool' lisp --site '$quiet/site' \
  --answers '$quiet/pick-NUMBER.json' -e '(zan_bv_motor_select)'"

# name | the file | the command that writes it (in the folder of the disk)
kinds=(
  "drawing|a.json|'$tool' lisp --site '$quiet/site' --drawing '$quiet/motor.json' --save a.json -e '(draw-line (list 0 0) (list NUMBER 1))'"
  "history|zan_brenvolt.xml|'$tool' draw --site '$quiet/site' --workbook zan_brenvolt.xls --circuit 'Three-phase motors' --type 'Direct on line' --history 'Pump 10 HP' --save-history 'Proof NUMBER' --out '$quiet/other.json'"
  "workbook|b.xls|sed -i 's/Line [^,]*/Line NUMBER/' '$quiet/sheets/M3_DOL.csv' && '$tool' workbook pack '$quiet/sheets' b.xls"
  "report|r.xls|'$tool' report parts '$quiet/motor.json' --format xls --out r.xls"
  "CSV|r.csv|'$tool' report parts '$quiet/motor.json' --format csv --out r.csv"
  "picture|p.svg|'$tool' lisp --site '$quiet/site' --drawing '$quiet/motor.json' --svg p.svg -e '(draw-line (list 0 0) (list NUMBER 1))'"
  "settings|s.json|$pick --settings s.json"
  "recording|session.json|$pick --record session.json"
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
# A write that cannot succeed: the file is as before, the message names it. Settings are a convenience, so what the
# command is for is done without them.
refused() {
  local how=$1 name=$2 file=$3 before=$4 status=$5
  [ "$status" -ne 0 ] || [ "$name" = settings ] || fail "$name, $how: the write counts as done"
  [ "$(sum "$file")" = "$before" ] || fail "$name, $how: the file has changed"
  grep -q "$file" "$quiet/out" || [ "$status" -gt 128 ] || fail "$name, $how: not reported: $(cat "$quiet/out")"
}

for kind in "${kinds[@]}"; do
  IFS='|' read -r name file command <<<"$kind"
  run "$command" 1 || { fail "$name: cannot be written at all: $(cat "$quiet/out")"; continue; }
  before=$(sum "$file")
  size=$(stat -c %s "$disk/$file")
  # Tables go into a new file: an existing database is changed by transactions.
  if [ "$name" = tables ]; then command=${command/t.db/t2.db} file=t2.db before=none; fi

  for left in 0 4; do
    [ "$size" -gt $((left * 1024)) ] || continue # a small file still fits
    fill "$left"
    status=0; run "$command" 2 || status=$?
    refused "a disk with $left KiB left" "$name" "$file" "$before" "$status"
    rm -f "$disk/filler"
  done

  if [ "$size" -gt 1024 ]; then
    status=0; (ulimit -f 1; run "$command" 3) || status=$?
    refused "a file that may not grow" "$name" "$file" "$before" "$status"
  fi

  mount -o remount,ro "$disk"
  status=0; run "$command" 4 || status=$?
  mount -o remount,rw "$disk"
  refused "a read-only folder" "$name" "$file" "$before" "$status"

  run "$command" 5 || fail "$name: the write after the faults: $(cat "$quiet/out")"
  [ "$(sum "$file")" != none ] || fail "$name: the write after the faults wrote nothing"
  stray=$(find "$disk" -maxdepth 1 -name "*$file?*" ! -name '*.lock' | head -3 | tr '\n' ' ')
  echo "$name: full disk, limit and read-only folder survived${stray:+ (beside it: $stray)}"
done
[ "$faults" = 0 ] || { echo "$faults faults"; exit 1; }
