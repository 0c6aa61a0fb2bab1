#!/usr/bin/env bash
# Sets against their yardsticks, all in this run: circuits a second of `brenvolt set build` with one and two processes
# against bare direct builds of the same rows in one process; 1,000 rows against ten times 100, by time and by memory;
# reports against reading the drawings; PDF of 250 sheets against a general converter; many circuits in one drawing.
#   BRENVOLT=out/bin/brenvolt bench/set_bench.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
tool=$PWD/${BRENVOLT:-out/bin/brenvolt}
bare=$(dirname "$tool")/set_direct
list=site/lists/pump_station.csv
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# What a command took: elapsed time, time of processors, the most memory of one process; its own output goes away.
measure() { /usr/bin/time -f '%e %U %S %M' -o "$work/time" "$@" >/dev/null 2>&1 || [ $? -eq 5 ]; tail -n 1 "$work/time"; }
report() { printf '%-58s %8s s elapsed %8s s + %s s of processors %8s KB\n' "$1" $2; }

site/lists/make_list.sh 100 >"$work/100.csv"
site/lists/make_list.sh 1000 >"$work/1000.csv"

# In turns, since the state of the machine changes.
for turn in 1 2 3; do
  "$bare" "$list" site
  for jobs in 1 2; do
    rm -rf "$work/a"
    report "the same rows as a set, $jobs processes" "$(measure "$tool" set build "$list" --site site --out "$work/a" --jobs $jobs)"
  done
done
report "100 rows, 2 processes" "$(measure "$tool" set build "$work/100.csv" --site site --out "$work/b" --jobs 2)"
report "1000 rows, 2 processes" "$(measure "$tool" set build "$work/1000.csv" --site site --out "$work/c" --jobs 2)"
report "100 rows, parts are there: sheets and lists alone" "$(measure "$tool" set build "$work/100.csv" --site site --out "$work/b" --jobs 2)"
report "1000 rows, parts are there: sheets and lists alone" "$(measure "$tool" set build "$work/1000.csv" --site site --out "$work/c" --jobs 2)"

sheets=("$work"/c/sheets/*.json)
report "wires of 1000 rows, ${#sheets[@]} sheets" "$(measure "$tool" report wires "${sheets[@]}" --format csv)"
report "reading the same sheets alone" "$(measure "$bare" "${sheets[@]}")"

# A general converter gets the same sheets as SVG.
some=("${sheets[@]:0:250}")
report "PDF of ${#some[@]} sheets" "$(measure "$tool" print "${some[@]}" --pdf "$work/own.pdf")"
echo "$(($(stat -c %s "$work/own.pdf") / ${#some[@]})) bytes a sheet"
if command -v rsvg-convert >/dev/null; then
  pictures=()
  for sheet in "${some[@]}"; do
    picture=$work/$(basename "$sheet" .json).svg
    "$tool" lisp --drawing "$sheet" --svg "$picture" -e T >/dev/null
    pictures+=("$picture")
  done
  report "rsvg-convert of their pictures" "$(measure rsvg-convert -f pdf -o "$work/other.pdf" "${pictures[@]}")"
  echo "$(($(stat -c %s "$work/other.pdf") / ${#some[@]})) bytes a sheet"
fi

# The same circuit again and again in one drawing: ten times as many take ten times as long.
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
