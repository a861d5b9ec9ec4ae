#!/usr/bin/env bash
# Feeds the search's receiving half with mutated replies and a live view with mutated video, under the sanitizers, each as
# long as this: scripts/fuzz.sh [SECONDS]
# An input that breaks one is left in build/fuzz; keep it beside the others in tests/fuzz once the fault is mended.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}

# fuzz TARGET INPUTS [OPTION...]
fuzz() {
    local target=$1 inputs=$PWD/tests/fuzz/$2
    local found=$PWD/build/fuzz/found/$target
    shift 2
    mkdir -p "$found"
    # What the search prints of odd replies is of no interest here; the fuzzer reports on standard error.
    "build/fuzz/bin/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$PWD/build/fuzz/" "$@" "$found" "$inputs" >/dev/null
}

scripts/setup.sh
scripts/build.sh fuzz search_reply_fuzz live_video_fuzz >/dev/null
fuzz search_reply_fuzz search_replies -max_len=65507 -dict=tests/fuzz/search_replies.dict
fuzz live_video_fuzz live_video -max_len=20000
