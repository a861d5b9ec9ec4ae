#!/usr/bin/env bash
# The library shows exactly the names of the checked-in list: check_exports.sh LIBRARY LIST
set -euo pipefail

diff <(nm -D --defined-only "$1" | awk '{print $3}' | LC_ALL=C sort) <(LC_ALL=C sort "$2")
