#!/usr/bin/env bash
# Configures a CMake preset and builds it: scripts/build.sh [PRESET [TARGET...]].
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
[ $# -gt 0 ] && shift
cmake --preset "$preset" >/dev/null
if [ $# -gt 0 ]; then
    cmake --build "build/$preset" --target "$@"
else
    cmake --build "build/$preset"
fi
