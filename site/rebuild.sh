#!/usr/bin/env bash
# Draws symbols, templates and frames from their LISP, and packs the workbook. A folder as argument takes the results
# instead of the site itself.
set -euo pipefail
site=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tool=${BRENVOLT:-$site/../out/bin/brenvolt}
[ -x "$tool" ] || tool=brenvolt
to=${1:-$site}
mkdir -p "$to/blocks" "$to/templates" "$to/frames"

# The names in a source's table, one a line.
names() { sed -n '/^(setq GBL_site_/,$p' "$1" | grep -o '("[A-Za-z_0-9]*" draw' | cut -d'"' -f2; }

for name in $(names "$site/blocks/src/symbols.lsp"); do
  "$tool" lisp "$site/blocks/src/symbols.lsp" -e "(site-draw-symbol \"$name\")" \
    --save "$to/blocks/$name.json" >/dev/null
done
for name in $(names "$site/templates/src/templates.lsp"); do
  "$tool" lisp --site "$site" "$site/templates/src/templates.lsp" -e "(site-draw-template \"$name\")" \
    --save "$to/templates/$name.json" >/dev/null
done
for name in $(names "$site/frames/src/frames.lsp"); do
  "$tool" lisp "$site/frames/src/frames.lsp" -e "(site-draw-frame \"$name\")" --save "$to/frames/$name.json" >/dev/null
done
"$tool" workbook pack "$site/workbook" "$to/zan_brenvolt.xls" >/dev/null
