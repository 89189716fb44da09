#!/usr/bin/env bash
# Unpacks a 32-bit Wine into build/wine32, once, and joins it with the machine's 64-bit one in
# build/wine-both. Debian's package of it cannot be installed beside the 64-bit one, and this one needs no
# change to the machine but a 32-bit C library.
set -eu

cd "$(dirname "${BASH_SOURCE[0]}")/.."
root=$PWD/build/wine32

# Wine looks for the rest of itself, of either bitness, beside the program that was started.
join() {
  local both=$PWD/build/wine-both
  rm -rf "$both" "$both.new"
  mkdir -p "$both.new/usr/lib/wine"
  cp "$root/usr/lib/wine/wine" /usr/lib/wine/wine64 "$both.new/usr/lib/wine/"
  cp /usr/lib/wine/wineserver64 "$both.new/usr/lib/wine/wineserver"
  ln -s "$root/usr/lib/i386-linux-gnu" /usr/lib/x86_64-linux-gnu "$both.new/usr/lib/"
  ln -s /usr/share "$both.new/usr/share"
  mv "$both.new" "$both"
}

if [ -e "$root/ready" ]; then
  [ -e build/wine-both ] || join
  exit 0
fi
echo "Unpacking a 32-bit Wine into $root (100 MB to fetch)"
rm -rf "$root" "$root.packages"
mkdir -p "$root" "$root.packages/lists/partial"

unpack() (
  tools/install_packages.sh wine wine32
  cd "$root.packages"
  local apt=(apt-get -o APT::Architectures=i386 -o Dir::State::Lists="$PWD/lists"
    -o APT::Sandbox::User=root)
  "${apt[@]}" update || true  # the download tells whether what came is enough
  # Wine, and what it draws text with: with one of these libraries and without another it crashes.
  "${apt[@]}" download libwine:i386 wine32:i386 libfreetype6:i386 libpng16-16:i386 zlib1g:i386 \
    libbrotli1:i386 libfontconfig1:i386 libexpat1:i386 libuuid1:i386
  for package in *.deb; do dpkg --extract "$package" "$root"; done
  mv "$root"/lib/i386-linux-gnu/* "$root/usr/lib/i386-linux-gnu/"
  # The packages' own scripts make this one when they are installed.
  cp --remove-destination /usr/lib/x86_64-linux-gnu/wine/i386-windows/zlib1.dll \
    "$root/usr/lib/i386-linux-gnu/wine/i386-windows/"
  # What stands there looks for the machine's own server first, which is one for 64 bits.
  ln -sf wineserver32 "$root/usr/lib/wine/wineserver"
  "$root/usr/lib/wine/wine" --version
)

if ! unpack < /dev/null > "$root.log" 2>&1; then
  echo "A 32-bit Wine is not to be had here; its last words, from $root.log:" >&2
  tail -n 10 "$root.log" >&2
  exit 1
fi
rm -rf "$root.packages"
join
touch "$root/ready"
