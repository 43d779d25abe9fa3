#!/usr/bin/env bash
# Installs what is missing, builds the Windows DLL and keltool, and runs keltool under Wine.
# Arguments are passed to keltool (none: it prints the version and the families).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
source "$root/scripts/build.sh"
source "$root/scripts/wine-env.sh"
"$root/scripts/install-deps.sh"
win="$root/build/windows"
mkdir -p "$win"
kel_build "$win" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" >&2
kel_wine_start "$win"
trap kel_wine_stop EXIT
wine "$win/bin/keltool.exe" "$@"
