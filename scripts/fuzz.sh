#!/usr/bin/env bash
# Builds the libFuzzer targets (native, clang) and runs each for SECONDS (default 60), one after
# the other; prints executions and coverage per target. Crashing inputs land in build/fuzz/artifacts.
set -euo pipefail
source "$(dirname "$0")/build.sh"
kel_fuzz_run "${1:-60}"
