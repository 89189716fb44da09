#!/usr/bin/env bash
# Runs the benchmarks that ./dev bench has built, and what they are compared with.
set -eu
cd "$(dirname "${BASH_SOURCE[0]}")/.."

echo "== The logic on this machine"
for bench in build/bench/*_bench; do
  "$bench" --benchmark_color=false 2> /dev/null
done

echo
echo "== The component under Wine"
tools/wine.sh english regsvr32 /s "$PWD/build/x64/zepkit10.dll"
for bench in build/x64/*_bench.exe; do
  tools/wine.sh english "$bench"
done | tee build/bench/component.txt
tools/wine.sh english cscript //nologo bench/windows/late_calls.vbs

seconds=$(awk '/ seconds without a listener/ { print $1; exit }' build/bench/component.txt)
start=$(date +%s.%N)
gnuplot > build/bench/gnuplot.png << 'PLOT'
set terminal png size 480,320
set samples 1000000
set xrange [-10:10]
set yrange [-4:4]
plot sin(x)*x/3 with dots
PLOT
end=$(date +%s.%N)
awk -v ours="$seconds" -v start="$start" -v end="$end" 'BEGIN {
  printf "  gnuplot draws the same with dots in %.3f seconds: Draw takes %.3f of that\n",
         end - start, ours / (end - start) }'
