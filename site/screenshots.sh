#!/usr/bin/env bash
# Pictures of the windows for the manual, into docs/pictures/, without a screen. The sessions in site/pictures/ bring
# each window up.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
bin=$(realpath "${BRENVOLT_BIN:-out/bin}")
pictures=$(realpath "${1:-docs/pictures}")
# Its name is read in the pictures, so it is the same each time. The copy also keeps the site's own history as it is.
plant=/tmp/plant
mkdir "$plant" || {
  echo "remove $plant first" >&2
  exit 4
}
scratch=$(mktemp -d)
trap 'rm -rf "$plant" "$scratch"' EXIT
export QT_QPA_PLATFORM=offscreen HOME="$scratch/designer" XDG_CACHE_HOME="$plant/.cache" XDG_RUNTIME_DIR="$scratch/run"
mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
cp -r site "$plant/site"
cp site/pictures/*.json "$plant/"
cd "$plant"
"$bin/brenvolt" draw --site site --circuit "Three-phase motors" --type "Direct on line" --history "Pump 10 HP" \
  --out motor.json >/dev/null
BRENVOLT="$bin/brenvolt" bash site/project.sh project >/dev/null

gui() { # language, theme, further options
  local language=$1 theme=$2
  shift 2
  rm -f "$scratch/settings.json"
  "$bin/brenvolt-gui" --site site --settings "$scratch/settings.json" --language "$language" --theme "$theme" "$@"
}

take() { # language, theme, session, then pairs of a window and its picture
  gui "$1" "$2" --play "$3.json" --pictures "$scratch"
  shift 3
  while [ $# -gt 0 ]; do
    mv "$scratch/$1.png" "$pictures/$2.png"
    made+=("$pictures/$2.png")
    shift 2
  done
}

made=()
take en light circuits ZanDlgCircuit select_circuit ZanDlgConfig configuration
take en light first_unit ZanDlgConfig configuration_first_unit
take en light project ZanDlgExistCircuits existing_circuits ZanDlgAnnotation annotation_presets ZanAttrSelDlg values
take en light pickers ZanDlgMotorSelect select_motor ZanDlgPowerFeed select_load \
  ZanBrenvolt.MotorTableNotFound question help help
take en light wires ZanDlgWireSelect wire_lookup file report_file
take en dark wires ZanDlgWireSelect wire_lookup_dark
take de light circuits ZanDlgCircuit select_circuit_de
take de dark first_unit ZanDlgConfig configuration_dark_de
for window in "main_window en light" "main_window_dark_de de dark"; do
  read -r picture language theme <<<"$window"
  gui "$language" "$theme" --drawing motor.json --screenshot "$pictures/$picture.png"
  made+=("$pictures/$picture.png")
done
# What only a screen shows: the sessions of the tests make one.
cd "$OLDPWD"
SCREENS="manual 1180x760 1 en" bash tests/simhost_gui/screen_sessions.sh "$bin" "$scratch/sessions" \
  --test-case="the start page*,*with the mouse,the page has*" >/dev/null
for picture in start:start_01_page place:mouse_05_outline print_preview:paper_06_preview; do
  mv "$scratch/sessions/manual/${picture#*:}.png" "$pictures/${picture%%:*}.png"
  made+=("$pictures/${picture%%:*}.png")
done
# Each step of each session, on a small screen and on a large one, to be looked at.
bash tests/simhost_gui/screen_sessions.sh "$bin" "$(dirname "$bin")/sessions" ||
  echo "sessions failed: see $(dirname "$bin")/sessions" >&2
cp "$(dirname "$bin")/sessions/small/mouse_09_selected.png" "$pictures/main_window_small_de.png"
made+=("$pictures/main_window_small_de.png")
# Texts and plain areas need few colours.
pngquant --speed 1 --force --ext .png 128 -- "${made[@]}"
printf '%s\n' "${made[@]#"$PWD/"}"
