#!/usr/bin/env bash
# The sessions at a screen: on a small one, and on a large one with windows at twice their size. Each gets an X server and a
# window manager of its own. Says "skipped" where a package is missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
bin=$(realpath "${1:-out/bin}")
pictures=${2:-}
for tool in Xvfb openbox xdotool; do
  command -v "$tool" >/dev/null || {
    echo "skipped: $tool is not installed"
    exit 0
  }
done
scratch=$(mktemp -d)
pids=()
trap 'kill "${pids[@]}" 2>/dev/null || true; rm -rf "$scratch"' EXIT
export HOME="$scratch" XDG_CACHE_HOME="$scratch/cache" XDG_RUNTIME_DIR="$scratch/run"
mkdir -m 700 "$XDG_RUNTIME_DIR"
unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8

failed=0
while read -r screen; do
  read -r name size factor language <<<"$screen"
  : >"$scratch/display"
  Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp 3>"$scratch/display" 2>"$scratch/$name.log" &
  pids+=($!)
  for ((wait = 0; wait < 100; ++wait)); do [ -s "$scratch/display" ] && break; sleep 0.1; done
  DISPLAY=":$(cat "$scratch/display")"
  export DISPLAY
  openbox 2>>"$scratch/$name.log" &
  pids+=($!)
  # A window that comes before the window manager never gets the keyboard.
  for ((wait = 0; wait < 100; ++wait)); do xdotool get_num_desktops >/dev/null 2>&1 && break; sleep 0.1; done
  export QT_SCALE_FACTOR=$factor SESSION_LANGUAGE=$language
  [ -z "$pictures" ] || export SESSION_PICTURES="$pictures/$name"
  echo "screen of $size, windows at $factor times their size, language $language"
  "$bin/simhost_gui_test" --test-suite=screen "${@:3}" </dev/null || failed=1
done <<<"${SCREENS:-small 1024x700 1 de
large 3840x2160 2 en}"
exit $failed
