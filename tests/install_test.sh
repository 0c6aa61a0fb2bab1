#!/usr/bin/env bash
# An installation in a prefix unknown at build time: the tool finds its module, its texts and the sample site, the
# program with windows shows it, and another host can be built against the headers. Argument: the build folder.
set -uo pipefail
build=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix="$scratch/Programme für alle"
failures=0
export CMAKE_GENERATOR=Ninja # the build needs no other program

check() { # name, command
  local name=$1
  shift
  if "$@" >"$scratch/output" 2>&1; then return; fi
  failures=$((failures + 1))
  printf '%s:\n' "$name"
  sed 's/^/    /' "$scratch/output"
}

check "install" cmake --install "$build" --prefix "$prefix"
# Another place than the one that was installed into: nothing may remember it. The build folder has the same files beside
# the programs, so the names show which ones are read.
mv "$prefix" "$scratch/moved"
prefix="$scratch/moved"
export PATH="$prefix/bin:$PATH" HOME="$scratch" XDG_CACHE_HOME="" XDG_CONFIG_HOME="" QT_QPA_PLATFORM=offscreen
cd "$scratch" || exit 1
check "a new site" brenvolt site new plant
check "its workbook" brenvolt catalog --site plant --check
check "a circuit" brenvolt draw --site plant --circuit "Power feeds" --type Three-phase --history "Heater 15 kW" --out feed.json --svg feed.svg
echo '{"format":"brenvolt-answers","version":1,"steps":[]}' >none.json
for language in en de; do # the dialog has no answer, and the recording its title
  brenvolt lisp --language $language --site plant --answers none.json --record $language.json -e "(zan_bv_wire_select)" 2>/dev/null
done
check "forms and texts" grep '"title"' en.json de.json
check "German texts" bash -c '! diff <(grep "\"title\"" en.json) <(grep "\"title\"" de.json)'
check "no other files are read" bash -c '! strings -a "$1/bin/brenvolt" | grep -F "$2"' - "$prefix" "$build/bin"
for page in brenvolt brenvolt-draw; do check "page $page" test -s "$prefix/share/man/man1/$page.1.gz"; done
for file in share/bash-completion/completions/brenvolt share/zsh/vendor-completions/_brenvolt \
  share/fish/vendor_completions.d/brenvolt.fish share/brenvolt/docs/tool.md include/brenvolt/host_api.h; do
  check "$file" test -s "$prefix/$file"
done
if [ -x "$prefix/bin/brenvolt-gui" ]; then
  check "the window" brenvolt-gui --site plant --screenshot window.png feed.json
  check "its picture" test -s window.png
  for file in share/applications/brenvolt.desktop share/mime/packages/brenvolt-drawing.xml \
    share/icons/hicolor/scalable/apps/brenvolt.svg; do
    check "$file" test -s "$prefix/$file"
  done
fi
example="$prefix/share/doc/brenvolt-dev/examples/host"
check "configure a host" cmake -S "$example" -B host -DCMAKE_PREFIX_PATH="$prefix"
check "build a host" cmake --build host
check "run a host" ctest --test-dir host --output-on-failure

if [ $failures -ne 0 ]; then exit 1; fi
echo "all as expected"
