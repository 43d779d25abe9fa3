#!/usr/bin/env bash
# Installs what is missing, builds the Windows DLL and keltool, and runs keltool under Wine.
# Arguments are passed to keltool (none: it prints the version and the families).
set -euo pipefail
source "$(dirname "$0")/build.sh"
kel_build_windows keltool >&2
kel_wine_start "$win"
trap kel_wine_stop EXIT
wine "$win/bin/keltool.exe" "$@"
