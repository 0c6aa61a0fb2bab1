#!/usr/bin/env bash
# Pictures of the windows for the manual, into docs/pictures/, without a screen.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
bin=${BRENVOLT_BIN:-out/bin}
pictures=${1:-docs/pictures}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export QT_QPA_PLATFORM=offscreen

# The history is kept beside the workbook that a build reads: a copy leaves the site's own alone.
cp site/zan_brenvolt.xls site/zan_brenvolt.xml "$scratch/"
"$bin/brenvolt" draw --site site --workbook "$scratch/zan_brenvolt.xls" --circuit "Three-phase motors" \
  --type "Direct on line" --history "Pump 10 HP" --out "$scratch/motor.json" >/dev/null

window() { # picture, further options
  local picture=$1
  shift
  "$bin/brenvolt-gui" --site site --drawing "$scratch/motor.json" --settings "$scratch/settings.json" "$@" \
    --screenshot "$pictures/$picture"
  echo "$pictures/$picture"
}
window main_window.png --language en --theme light
window main_window_dark_de.png --language de --theme dark
