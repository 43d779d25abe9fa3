#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test: the Windows build under
# Wine, then the native build of the OS-independent code under the sanitizers.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
source "$root/scripts/build.sh"
source "$root/scripts/wine-env.sh"
"$root/scripts/install-deps.sh"
win="$root/build/windows"
native="$root/build/native"
mkdir -p "$win" "$native"

echo "== Windows build (mingw-w64), tests under Wine"
kel_build "$win" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake"
cmake --build "$win" --target kel_tests kel_benches --parallel "$(nproc)"
kel_wine_start "$win"
status=0
(cd "$win" && ctest --output-on-failure) || status=1
kel_wine_stop

echo "== Native build, sanitizers"
kel_build "$native"
cmake --build "$native" --target kel_tests --parallel "$(nproc)"
(cd "$native" && ctest --output-on-failure) || status=1
exit $status
