#!/usr/bin/env bash
# Runs the benchmarks that were built, or those named: each measures against a yardstick in its own run, and the ratios
# are what counts. Figures differ from machine to machine and are asserted nowhere.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  for program in out/bin/*_bench; do names+=("$(basename "$program")"); done
fi
for name in "${names[@]}"; do
  [ -x "out/bin/$name" ] || { echo "no benchmark $name: see bench/CMakeLists.txt" >&2; exit 1; }
  printf '\n== %s\n' "$name"
  options=()
  # Long runs one after the other would compare two states of the machine: they take turns, several times.
  [ "$name" != build_bench ] || options=(--benchmark_enable_random_interleaving=true --benchmark_repetitions=9
    --benchmark_min_time=0.1 --benchmark_report_aggregates_only=true)
  "out/bin/$name" "${options[@]}"
done
