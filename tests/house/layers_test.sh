#!/usr/bin/env bash
# The compiler refuses an include that the layers forbid, and says so. Arguments: the compiler, a layer and its include
# folders with ":" between them.
set -uo pipefail
compiler=$1 layer=$2 folders=$3
options=(-std=c++20 -fsyntax-only -x c++)
IFS=: read -ra list <<<"$folders"
for folder in "${list[@]}"; do options+=(-I "$folder"); done
failures=0
cd / || exit 1 # a source of the repository is not beside what it includes
while read -r header verdict; do
  message=$(printf '#include "%s"\n' "$header" | "$compiler" "${options[@]}" - 2>&1) && actual=allowed || actual=refused
  [ "$actual" = refused ] && ! grep -q "this layer must not include ${header%/*}/" <<<"$message" && actual="broken: $message"
  [ "$actual" = "$verdict" ] && continue
  failures=$((failures + 1))
  echo "$header in $layer: $actual, expected: $verdict"
done <<'TABLE'
data/wire_sizing.h allowed
text/compare.h allowed
host/host_api_ui.h allowed
host/lisp_symbols.h allowed
platform/tables.h allowed
project/circuit_list.h refused
config/config_units.h refused
flows/dlg_config.h refused
widgets/settings_window.h refused
simhost/host/session.h refused
circuits/reports/drawing_reports.h refused
TABLE
exit $((failures > 0))
