#!/usr/bin/env bash
# Measures live pictures against what one would use in the SDK's place and prints a table of ratios:
# scripts/bench_media.sh [FRAMES [REPETITIONS]]   with frames of each stream in a run of a client, recorded five times as many
# It takes half an hour. The raw figures stay in build/release/bench-results/media.
set -euo pipefail
cd "$(dirname "$0")/.."

frames=${1:-200}
repetitions=${2:-3}
recorded=$((5 * frames)) # a frame costs little beside what it takes to start
openings=15
cycles=1000
seconds=60
bench=build/release/bin/kx_media_bench
results=build/release/bench-results
facts=$results/media

step() { echo "$*" >&2; }

# Facts come on standard error, beside complaints.
measure() {
    step "$1 ..."
    shift
    "$bench" "$@" 2>"$results/log" || { cat "$results/log" >&2; exit 1; }
    grep -E '^[a-z_]+/[^ ]+ -?[0-9.]+$' "$results/log" >>"$facts"
}

# The rows of the table, see bench_table.awk.
rows() {
    decoding
    recording
    cat <<'ROWS'
From the call to the first picture
a camera that begins with a key frame | first_frame/sdk | | | <= 100 ms
a camera that begins with a key frame | first_frame/sdk | plain loop         | first_frame/floor
a camera that begins with a key frame | first_frame/sdk | loop that probes   | first_frame/probing
Within
ROWS
    cat <<ROWS
system calls a frame                  | calls/sdk | plain loop | calls/floor
Over time
frames lost in $seconds s, 8 streams of 640x360  | frames/lost | | | <= 0
heap growth, $cycles openings and closings | bytes/cycles_heap | | | <= 65536 B
growth of memory, $cycles openings and closings | bytes/cycles_resident | | | <= 1048576 B
ROWS
}

decoding() {
    echo "Decoding to packed colour, processor time of a frame (ffmpeg, GStreamer: a process a stream)"
    for streams in 1 4 8; do
        echo "$(of $streams) | frame_cpu/decode/sdk/$streams | plain loop | frame_cpu/decode/floor/$streams | <= 1.05"
        for other in ffmpeg gstreamer; do
            echo "$(of $streams) | frame_cpu/decode/sdk/$streams | $other | frame_cpu/decode/$other/$streams"
        done
    done
    echo "Decoding to packed colour, peak memory"
    for streams in 1 4 8; do
        for other in floor ffmpeg gstreamer; do
            echo "$(of $streams) | memory/decode/sdk/$streams | ${other/floor/plain loop} | memory/decode/$other/$streams"
        done
    done
}

recording() {
    echo "Recording $recorded frames of each stream to AVI, processor time, start and end included"
    for streams in 1 4 8; do
        echo "$(of $streams) | run_cpu/record/sdk/$streams | ffmpeg -c copy | run_cpu/record/ffmpeg/$streams | <= 1.00"
    done
    echo "Recording to AVI, processor time of a frame more (a small difference: only a quiet machine can tell)"
    for streams in 1 4 8; do
        echo "$(of $streams) | frame_cpu/record/sdk/$streams | ffmpeg -c copy | frame_cpu/record/ffmpeg/$streams"
    done
    echo "Recording to AVI, peak memory"
    for streams in 1 4 8; do
        echo "$(of $streams) | memory/record/sdk/$streams | ffmpeg -c copy | memory/record/ffmpeg/$streams"
    done
}

of() { [ "$1" = 1 ] && echo "1 stream" || echo "$1 streams"; }

# Who can not keep up is measured all the same: what counts is the time of a frame.
stragglers() {
    awk '/^pace/ && $2 < 24000 {
        split($1, name, "/")
        printf "%s could not keep up with %d streams: %.0f frames a second of each (%s).\n",
            name[3], name[4], $2 / 1000, name[2] }' "$facts"
}

scripts/setup.sh
step "Building ..."
cmake --preset release -DKX_BUILD_BENCH=ON >/dev/null
cmake --build build/release --target kx_media_bench -- --quiet
mkdir -p "$results"
rm -f "$facts"
measure "Timing first pictures" first-frame "$openings"
measure "Counting system calls" calls "$frames"
measure "Decoding, some minutes" decode "$frames" "$repetitions"
measure "Recording, a quarter of an hour" record "$recorded" "$repetitions"
measure "Looking for lost frames" losses "$seconds"
measure "Opening and closing $cycles times, some minutes" cycles "$cycles"
awk -f scripts/bench_table.awk "$facts" <(rows)
echo
stragglers
cat <<'NOTE'
1920x1080, 25 frames a second, H.264, by RTSP over TCP from simulated cameras in a process of their own.
ratio = ours / the alternative's, both taken in this run in turns: less is better. A frame's time is what a longer run takes
more than a short one, the least of several: a client's start does not count. The plain loop, "floor" in
the figures, is the least that FFmpeg's libraries need to do the same.
NOTE
