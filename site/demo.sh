#!/usr/bin/env bash
# Draws the sample circuits side by side on one drawing, and a set of 60 from a motor list: out/demo/ gets the drawing, its
# pictures, the history file, and in set/ the sheets with their lists and one PDF.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
tool=${BRENVOLT:-out/bin/brenvolt}
demo=${1:-out/demo}
drawing=$demo/demo.json

rm -rf "$demo"
mkdir -p "$demo"
# The history is kept beside the workbook that a build reads: a copy leaves the site's own alone.
cp site/zan_brenvolt.xls site/zan_brenvolt.xml "$demo/"

# circuit | type | saved configuration to take over | where
circuits='Three-phase motors|Direct on line|Pump 10 HP|0,0
Three-phase motors|Reversing|Hoist 5 HP|215,0
Three-phase motors|Star-delta|Fan 40 HP|436,0
Three-phase motors|Two motors, one feeder|Two pumps 10 and 5 HP|665,0
Control circuits|Start and stop station|Station|215,-275
Single-phase motors|Direct on line|Sump 1.5 HP|0,-185
Power feeds|Three-phase|Heater 15 kW|0,-335
Power feeds|Single-phase|Heater 2 kW|436,-300'

into=()
count=0
while IFS='|' read -r circuit type history at; do
  "$tool" draw --site site --workbook "$demo/zan_brenvolt.xls" --circuit "$circuit" --type "$type" \
    --history "$history" --save-history "Demo, $history" --at "$at" "${into[@]}" --out "$drawing" >/dev/null
  into=(--drawing "$drawing")
  count=$((count + 1))
  printf '%d  %s, %s: %s\n' "$count" "$circuit" "$type" "$history"
done <<<"$circuits"

"$tool" lisp --site site --drawing "$drawing" --save "$drawing" --svg "$demo/demo.svg" \
  -e '(site-frame -20 -415 935 50 "SAMPLE CIRCUITS" "E-001")' >/dev/null
if command -v rsvg-convert >/dev/null; then
  rsvg-convert -w 2600 "$demo/demo.svg" -o "$demo/demo.png"
fi

echo "$count circuits in $drawing"
"$tool" lisp --site site --drawing "$drawing" -e '(site-summary)'
echo "saved configurations in $demo/zan_brenvolt.xml:"
"$tool" history list --site site --workbook "$demo/zan_brenvolt.xls"

# Findings, such as a code without sizing tables, are part of the sample: the set is there all the same.
"$tool" set build site/lists/pump_station.csv --site site --out "$demo/set" --frame A2 --scale 0.8 --title "PUMP STATION" \
  --date 2026-01-31 --revision A || [ $? -eq 5 ]
"$tool" print "$demo"/set/sheets/*.json --pdf "$demo/set/pump_station.pdf" --title "PUMP STATION" \
  --list sheets --list motors --list parts --list cables --list terminals --list wires
