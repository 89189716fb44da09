#!/usr/bin/env bash
# Installs what is missing of the named groups of Debian packages:
#     tools/install_packages.sh GROUP…
set -eu

packages_of() {
  case $1 in
    native) echo python3 cmake ninja-build g++ googletest ;;
    windows) echo g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix wine64-tools libwine-dev ;;
    wine) echo wine wine64 fonts-liberation ;;
    wine32) echo libc6-i386 ;;
    screen) echo xvfb imagemagick ;;
    package) echo wixl msitools ;;
    format) echo clang-format ;;
    lint) echo clang-tidy ;;
    fuzz) echo clang libclang-rt-14-dev ;;
    clients) echo fp-compiler fpc-source mono-mcs ;;
    docs) echo python3-markdown ;;
    browser) echo chromium chromium-driver ;;
    bench) echo libbenchmark-dev libmuparser-dev gnuplot-nox ;;
    *) echo "tools/install_packages.sh: no group '$1'" >&2; exit 2 ;;
  esac
}

purpose_of() {
  case $1 in
    native) echo "to build and test on this machine" ;;
    windows) echo "to build for Windows" ;;
    wine) echo "to run what is built for Windows" ;;
    wine32) echo "for a 32-bit Wine" ;;
    screen) echo "to take pictures of windows" ;;
    package) echo "to make installers" ;;
    format) echo "to check the formatting" ;;
    lint) echo "to look for doubtful code" ;;
    fuzz) echo "to fuzz" ;;
    clients) echo "to build clients in other languages" ;;
    docs) echo "to make the documentation" ;;
    browser) echo "to look at the documentation in a browser" ;;
    bench) echo "to measure, and to compare with" ;;
  esac
}

is_installed() {
  [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2> /dev/null)" = installed ]
}

missing=()
for group in "$@"; do
  of_group=()
  for package in $(packages_of "$group"); do
    is_installed "$package" || of_group+=("$package")
  done
  [ ${#of_group[@]} -eq 0 ] && continue
  echo "Missing $(purpose_of "$group"): ${of_group[*]}"
  missing+=("${of_group[@]}")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if ! command -v apt-get > /dev/null; then
  echo "This machine has no apt-get. Install what the Debian packages above contain, then call again." >&2
  exit 1
fi
install="apt-get install -y --no-install-recommends ${missing[*]}"
if [ "$(id -u)" -ne 0 ]; then
  echo "Only root can install them. Run this as root, then call again:" >&2
  echo "    apt-get update && $install" >&2
  exit 1
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "Installing them with apt-get"
export DEBIAN_FRONTEND=noninteractive
if ! { apt-get update && $install; } < /dev/null > "$log" 2>&1; then
  tail -n 20 "$log" >&2
  echo "The packages could not be installed. With a working apt-get, run this and call again:" >&2
  echo "    $install" >&2
  exit 1
fi
