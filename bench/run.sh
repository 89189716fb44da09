#!/usr/bin/env bash
# Runs every benchmark that was built: those of this machine, then those of the component under Wine.
set -eu
cd "$(dirname "${BASH_SOURCE[0]}")/.."

for program in build/bench/*_bench; do
  [ -x "$program" ] || continue
  echo "$(basename "$program") on this machine"
  "$program" --benchmark_color=false
done
tools/wine.sh english regsvr32 /s "$PWD/build/x64/zepkit10.dll"
for program in build/x64/*_bench.exe; do
  [ -e "$program" ] || continue
  echo "$(basename "$program" .exe) of the component"
  WINE_TIMEOUT=0 tools/wine.sh english "$program"
done
