#!/usr/bin/env bash
# Builds everything and runs all tests: scripts/test.sh [PRESET [ctest arguments...]].
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
[ $# -gt 0 ] && shift
scripts/setup.sh
scripts/build.sh "$preset"
ctest --test-dir "build/$preset" --output-on-failure --parallel "$(($(nproc) * 3 / 2))" "$@" # many of them wait
