#!/usr/bin/env bash
# Builds targets of a CMake preset, all of them if none is named, into build/PRESET:
#     tools/build.sh PRESET [TARGET…]
# Says one line; the compiler's words go to build/log/build-PRESET.log and, if it fails, here.
set -eu

cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=$1
shift
log=build/log/build-$preset.log
mkdir -p build/log
echo "Building $preset${*:+: $*}"
{ cmake --preset "$preset" && cmake --build --preset "$preset" ${*:+--target "$@"}; } \
  < /dev/null > "$log" 2>&1 || {
  # ninja goes on with other files after an error, so the reasons stand before the end.
  { grep -m 20 -A 3 -E '[Ee]rror: |undefined reference|cannot export|^FAILED' "$log" ||
    tail -n 30 "$log"; } | cut -c -300 >&2
  echo "Building $preset failed. Everything it said is in $log; mend it and call again." >&2
  exit 1
}
grep ' warning: ' "$log" | sort -u >&2 || true
