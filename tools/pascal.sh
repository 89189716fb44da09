#!/usr/bin/env bash
# Compiles a Free Pascal program for Windows:
#     tools/pascal.sh PRESET SOURCE.pas FOLDER
# PRESET is x64 or x86; the program and its units go to FOLDER, where units that it uses may be as well. Debian has
# the compiler and the sources of its libraries, but no libraries for Windows: what every program starts from is
# compiled into build/pascal/PRESET when it is first used, the other units with the program that uses them.
set -eu

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1 program=$2 folder=$3
case $preset in
  x64) target=win64 processor=x86_64 ;;
  x86) target=win32 processor=i386 ;;
  *) echo "tools/pascal.sh: the preset is x64 or x86, not '$preset'" >&2; exit 2 ;;
esac
made=$root/build/pascal/$preset
sources=/usr/share/fpcsrc/$(ppcx64 -iV)

# The 64-bit compiler makes no 32-bit programs. That of Debian's other architecture runs here, as it is.
unpack_compiler() {
  local packages=$made.packages
  rm -rf "$packages"
  mkdir -p "$packages/lists/partial"
  cd "$packages"
  local apt=(apt-get -o APT::Architectures=i386 -o Dir::State::Lists="$PWD/lists" -o APT::Sandbox::User=root)
  "${apt[@]}" update || true  # the download tells whether what came is enough
  "${apt[@]}" download "fp-compiler-$(ppcx64 -iV):i386"
  dpkg --extract ./*.deb .
  cp usr/lib/i386-linux-gnu/fpc/*/ppc386 "$made/"
  rm -rf "$packages"
}

compiler=ppcx64
[ "$preset" = x64 ] || compiler=$made/ppc386

# Options that make the compiler look for units and include files in folders of the sources.
in_folders() {
  local name
  for name in "$@"; do printf '%s\n' "-Fu$sources/$name" "-Fi$sources/$name"; done
}

# -n: no configuration of the machine's own; -v0: errors only.
compile() {
  "$compiler" -n -v0e -T$target -O1 "$@"
}

make_libraries() {
  mkdir -p "$made/units"
  [ "$preset" = x64 ] || unpack_compiler
  local options
  mapfile -t options < <(in_folders rtl/{$target,win,win/wininc,inc,$processor,objpas,objpas/sysutils,objpas/classes})
  # The first unit is the language itself, which nothing else can be compiled without.
  compile -Us -Sg "${options[@]}" "-FU$made/units" "$sources/rtl/$target/system.pp"
  compile -Sg "${options[@]}" "-FU$made/units" "$sources/rtl/$target/buildrtl.pp"
  touch "$made/ready"
}

mkdir -p "$root/build/pascal"
[ -e "$made/ready" ] || (make_libraries) < /dev/null > "$made.log" 2>&1 || {
  echo "tools/pascal.sh: Free Pascal could not be set up; its last words, from $made.log:" >&2
  tail -n 10 "$made.log" >&2
  exit 1
}
mapfile -t libraries < <(in_folders packages/{winunits-base,fcl-registry,fcl-base,fcl-xml}/src \
  packages/fcl-base/src/win packages/rtl-objpas/src/{inc,win,common,$processor})
mkdir -p "$folder"
compile "-Fu$made/units" "-Fu$folder" "${libraries[@]}" "-FU$folder" "-FE$folder" "$program"
