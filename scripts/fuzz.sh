#!/usr/bin/env bash
# Feeds the search's receiving half with mutated replies under the sanitizers: scripts/fuzz.sh [SECONDS]
# An input that breaks it is left in build/fuzz; keep it in tests/fuzz/search_replies once the fault is mended.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
scripts/setup.sh
scripts/build.sh fuzz search_reply_fuzz >/dev/null
mkdir -p build/fuzz/found
# What the search prints of odd replies is of no interest here; the fuzzer reports on standard error.
build/fuzz/bin/search_reply_fuzz -max_total_time="$seconds" -max_len=65507 -timeout=10 -rss_limit_mb=2048 \
    -artifact_prefix="$PWD/build/fuzz/" -dict=tests/fuzz/search_replies.dict -print_final_stats=1 \
    "$PWD/build/fuzz/found" "$PWD/tests/fuzz/search_replies" >/dev/null
