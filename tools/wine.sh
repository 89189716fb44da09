#!/usr/bin/env bash
# Runs a Windows program in a private Wine prefix without a display:
#     tools/wine.sh USER PROGRAM [ARGUMENT…]
# USER is the user's language, `english` or `german`: Wine takes locale, code pages and language of
# texts from it. Each has a prefix of its own, build/wine/USER, made when it is first used, because
# every process there writes the locale into it. `english-x86` and `german-x86` have 32-bit machines, and
# the 64-bit machine of `english-both` runs 32-bit programs, too (those in C:\windows\syswow64 are some);
# tools/make_wine32.sh provides them. `english-clients` and `english-clients-x86` are for what installs the
# component, so that other tests can run meanwhile. Passes output and exit code of the program through.
# WINE_TIMEOUT (seconds, 0 for none, 300 if not set) limits the run; past it the exit code is 124.
set -u

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
user=$1
shift
case $user in
  english | english-x86 | english-clients | english-clients-x86 | english-both) locale=C.UTF-8 ;;
  german | german-x86) locale=de_DE.UTF-8 ;;  # the locale itself need not be installed
  *) echo "tools/wine.sh: there is no user '$user'; see the head of the file" >&2; exit 2 ;;
esac
wine=wine wineserver=wineserver
case $user in
  *-x86)
    wine=$root/build/wine32/usr/lib/wine/wine
    wineserver=${wine}server32
    export WINEARCH=win32 WINESERVER=$wineserver
    ;;
  *-both)
    wine=$root/build/wine-both/usr/lib/wine/wine64
    wineserver=${wine%64}server
    ;;
esac
if [ "$wine" != wine ]; then
  [ -e "$root/build/wine32/ready" ] && [ -e "$wine" ] ||
    { echo "There is no 32-bit Wine; tools/make_wine32.sh makes it" >&2; exit 1; }
  export LD_LIBRARY_PATH=$root/build/wine32/usr/lib/i386-linux-gnu
fi
export WINEPREFIX=$root/build/wine/$user
export WINEDEBUG=-all
# Without the last part a crash can end with exit code 0.
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"
unset DISPLAY WAYLAND_DISPLAY

run() {
  timeout --kill-after=5 "${WINE_TIMEOUT:-300}" env LC_ALL=$locale "$wine" "$@"
}

# Wine's complaints about this machine's devices say nothing about the program.
filter() {
  grep --line-buffered --invert-match -e 'wine32 is missing' -e 'Read access denied for device' >&2
}

make_prefix() {
  echo "Making a Wine prefix for the $user user in $WINEPREFIX"
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  run wineboot --init &&
    # Windows, timers and dialogs work without a display.
    run reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f &&
    # The server keeps the driver that it was started with: let it end.
    "$wineserver" --wait
} < /dev/null > "$WINEPREFIX.log" 2>&1

if [ ! -e "$WINEPREFIX/ready" ]; then
  mkdir -p "$root/build/wine"
  if ! make_prefix; then
    echo "tools/wine.sh: Wine could not be set up; its last words, from $WINEPREFIX.log:" >&2
    tail -n 20 "$WINEPREFIX.log" >&2
    exit 1
  fi
  touch "$WINEPREFIX/ready"
fi
run "$@" 2> >(filter)
