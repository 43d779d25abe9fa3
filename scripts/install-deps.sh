#!/usr/bin/env bash
# Installs what the build and the tests need on Debian 12; does nothing when all is there.
set -euo pipefail
# Xvfb, xclip and ImageMagick: keltool's window and clipboard tests under a real X display.
# clang and its runtime: the fuzz targets. OpenSSL and libmcrypt: references of the crypto tests.
# Doxygen: the API documentation.
# libisal-dev and libdeflate-dev only serve the native CRC benchmark, which is left out without
# them.
packages=(cmake make g++ mingw-w64 g++-mingw-w64-x86-64-posix wine wine64 googletest
          libssl-dev libmcrypt-dev
          libz-mingw-w64-dev zlib1g-dev xvfb xclip imagemagick clang libclang-rt-14-dev doxygen
          libisal-dev libdeflate-dev)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
