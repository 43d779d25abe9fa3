#!/usr/bin/env bash
# Usage: fuzz.sh [SECONDS [RUNS [TARGET...]]]
# Builds the libFuzzer targets (native, clang) and runs each (or the named ones) one after the
# other for SECONDS (default 60) or until RUNS executions; prints executions and coverage per
# target. Crashing inputs land in build/fuzz/artifacts.
set -euo pipefail
source "$(dirname "$0")/build.sh"
kel_fuzz_run "${1:-60}" "${2:--1}" "${@:3}"
