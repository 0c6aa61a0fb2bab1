#!/usr/bin/env bash
# make_list.sh N: a list of N motors and loads on standard output, the rows of the pump station again and again under
# tags of their own.
set -euo pipefail
count=${1:?how many rows}
sample=$(dirname "${BASH_SOURCE[0]}")/pump_station.csv
awk -v count="$count" '
  /^#/ { next }
  !header { header = $0; print; next }
  { rows[++known] = $0 }
  END {
    for (row = 1; row <= count; ++row) {
      line = rows[(row - 1) % known + 1]
      sub(/^[A-Z]+/, sprintf("%c%d", 65 + int((row - 1) / known) % 26, int((row - 1) / known)), line)
      print line
    }
  }' "$sample"
