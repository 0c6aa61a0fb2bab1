#!/usr/bin/env bash
# Sets against their yardsticks, all in this run: circuits a second of `brenvolt set build` with one and two processes
# against bare direct builds of the same circuits in one process; 1,000 rows against ten times 100; memory by the number
# of sheets; many circuits in one drawing; reports against reading the drawings; PDF against a general converter.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
tool=$PWD/${BRENVOLT:-out/bin/brenvolt}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# seconds COMMAND...: user time beside elapsed time, and the most memory, of a command; its own output goes away.
measure() { /usr/bin/time -f '%e %U %M' -o "$work/time" "$@" >/dev/null 2>&1 || [ $? -eq 5 ]; cat "$work/time"; }
report() { printf '%-58s %8s s elapsed %8s s of processor %8s KB\n' "$1" $2; }

site/lists/make_list.sh 100 >"$work/100.csv"
site/lists/make_list.sh 1000 >"$work/1000.csv"

report "100 rows, 1 process" "$(measure "$tool" set build "$work/100.csv" --site site --out "$work/a" --jobs 1)"
report "100 rows, 2 processes" "$(measure "$tool" set build "$work/100.csv" --site site --out "$work/b" --jobs 2)"
report "100 rows, all parts there: sheets and lists alone" "$(measure "$tool" set build "$work/100.csv" --site site --out "$work/b")"
report "1000 rows, 2 processes" "$(measure "$tool" set build "$work/1000.csv" --site site --out "$work/c" --jobs 2)"
report "reports of 1000 rows" "$(measure "$tool" report wires "$work"/c/sheets/*.json --format csv)"
report "PDF of 1000 rows" "$(measure "$tool" print "$work"/c/sheets/*.json --pdf "$work/c.pdf")"
echo "$(ls "$work/c/sheets" | wc -l) sheets, $(stat -c %s "$work/c.pdf") bytes of PDF"

# The yardstick of builds: the same circuit again and again in one process, each in the same drawing.
direct() {
  local forms="" i
  for ((i = 0; i < $1; ++i)); do
    forms+="(site-build \"templates/motor3_dol.json\" \"$PWD/site/zan_brenvolt.xls\" \"M3_DOL\" \"Three-phase motors\" "
    forms+="\"Direct on line\" \"Pump 10 HP\" '($((i % 10 * 250)).0 $((i / 10 * -200)).0) \"\" \"\" \"\")"
  done
  printf '(progn %s T)' "$forms" >"$work/direct.lsp"
  measure "$tool" lisp --site site "$work/direct.lsp"
}
for count in 15 30 60 120; do report "$count circuits in one drawing, one process" "$(direct $count)"; done
