#!/usr/bin/env bash
# Takes a picture of what a script shows on a screen of its own, some seconds after it was started:
#     tools/screenshot.sh DLL DPI PICTURE.png SCRIPT [ARGUMENT…]
# DPI is the screen's dots per inch: 96, 192 … The component in DLL is registered first. The script is ended
# when the picture has been taken. SCREEN (1024x768 if not set) is the screen's size, SECONDS_BEFORE (4)
# the time that the script gets. The Wine prefix is build/wine/screen, made when it is first used.
set -eu

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
dll=$(realpath "$1") dpi=$2 picture=$(realpath -m "$3") script=$4
shift 4
export WINEPREFIX=${WINEPREFIX:-$root/build/wine/screen}
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"
unset WAYLAND_DISPLAY
mkdir -p "$WINEPREFIX"

# The X server picks a free display and tells its number.
exec 3< <(exec Xvfb -displayfd 1 -screen 0 "${SCREEN:-1024x768}x24" -nolisten tcp 2> /dev/null)
server=$!
trap 'kill $server' EXIT
read -r number <&3
export DISPLAY=:$number

themes='HKCU\Software\Microsoft\Windows\CurrentVersion\ThemeManager'
{
  [ -e "$WINEPREFIX/system.reg" ] || wineboot --init
  # Without a window manager Wine draws the frames of windows itself.
  wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
  wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dpi" /f
  wine reg add "$themes" /v ThemeActive /d 1 /f
  wine reg add "$themes" /v ColorName /d Blue /f
  wine reg add "$themes" /v SizeName /d NormalSize /f
  wine reg add "$themes" /v DllName /t REG_EXPAND_SZ /d '%SystemRoot%\resources\themes\light\light.msstyles' /f
  wineserver --wait
  wine regsvr32 /s "$dll"
} < /dev/null > "$WINEPREFIX.log" 2>&1

# Script hosts take what begins with a slash for an option.
wine cscript //nologo "Z:$(realpath "$script")" "$@" < /dev/null 2> /dev/null &
client=$!
sleep "${SECONDS_BEFORE:-4}"
import -window root "$picture"
kill $client 2> /dev/null || true
wineserver --kill || true
echo "$picture"
