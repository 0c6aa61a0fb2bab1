#!/usr/bin/env bash
# A small project to take circuits over from: its database and its drawing, made in the folder that is the argument.
set -euo pipefail
site=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tool=${BRENVOLT:-$site/../out/bin/brenvolt}
[ -x "$tool" ] || tool=brenvolt
to=${1:-$site/../out/project}
mkdir -p "$to"
rm -f "$to/project.db" "$to/plant.json"
"$tool" import "$to/project.db" "$site/project" >/dev/null

# circuit | type | saved configuration to take over | where
circuits='Three-phase motors|Direct on line|Pump 10 HP|0,0
Three-phase motors|Reversing|Hoist 5 HP|215,0
Power feeds|Single-phase|Heater 2 kW|0,-200'

into=()
while IFS='|' read -r circuit type history at; do
  "$tool" draw --site "$site" --circuit "$circuit" --type "$type" --history "$history" --at "$at" "${into[@]}" \
    --project "$to/project.db" --out "$to/plant.json"
  into=(--drawing "$to/plant.json")
done <<<"$circuits"
