#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test: the Windows build under
# Wine and its API documentation (which must build without a warning), then the native build
# of the OS-independent code under the sanitizers, then briefly every fuzz target.
set -euo pipefail
source "$(dirname "$0")/build.sh"
status=0

echo "== Windows build (mingw-w64), tests under Wine"
kel_build_windows all
echo "== API documentation (any Doxygen warning fails)"
cmake --build "$win" --target kel_docs || { cat "$win/docs/warnings.log"; status=1; }
kel_wine_start "$win"
(cd "$win" && ctest --output-on-failure) || status=1
echo "== The installed SDK, used by a separate project"
kel_consumer_check || status=1
kel_wine_stop

echo "== Native build, sanitizers"
kel_build "$native" all
(cd "$native" && ctest --output-on-failure) || status=1

if command -v clang++ >/dev/null; then
    echo "== Fuzz targets, a few seconds each"
    kel_fuzz_run 3 || status=1
fi
exit $status
