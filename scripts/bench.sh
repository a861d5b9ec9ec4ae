#!/usr/bin/env bash
# Measures the SDK against what one would use in its place and prints a table of ratios: scripts/bench.sh
# The raw figures, and profiles for "callgrind_annotate --threshold=100", stay in build/release/bench-results.
set -euo pipefail
cd "$(dirname "$0")/.."

counted=100 # requests of a client whose instructions are counted
many=100000 # requests after which the heap is looked at
bench=build/release/bin/kx_bench
results=build/release/bench-results

step() { echo "$*" >&2; }

# Runs a command whose output matters only when it fails.
quietly() {
    "$@" >"$results/log" 2>&1 || { cat "$results/log" >&2; exit 1; }
}

measure() {
    step "Counting user-space instructions ..."
    quietly valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file="$results/callgrind" \
        "$bench" --instructions "$counted"
    step "Taking times, a minute or less ..."
    quietly "$bench" --benchmark_min_time=0.1 --benchmark_repetitions=9 --benchmark_report_aggregates_only=true \
        --benchmark_enable_random_interleaving=true \
        --benchmark_out="$results/times.csv" --benchmark_out_format=csv
    step "Sending $many requests, half a minute or so ..."
    "$bench" --heap "$many" >"$results/heap"
    step "Sending a firmware ..."
    "$bench" --upload-heap 2>>"$results/heap" >"$results/log"
}

# Everything measured, a fact a line: "NAME VALUE". Times are in nanoseconds.
facts() {
    cat "$results/heap"
    awk -v counted="$counted" '
        /^desc: Trigger: Client Request: / { name = $NF }
        /^totals: / { print "instructions/" name, $2 / counted }' "$results"/callgrind.*
    awk -F, '
        /_best"/ {
            name = $1
            gsub(/"|_best|\/real_time|\/threads:[0-9]+/, "", name)
            print "real/" name, $3
            print "cpu/" name, $4
            print "rate/" name, 1e9 / $3
        }' "$results/times.csv"
}

# The rows of the table: what | our fact | the alternative | its fact | the ratio to reach.
rows() {
    cat <<'ROWS'
A request to a simulated camera (floor: bare sockets, one resolution, a request made beforehand)
user-space instructions, camera by address  | instructions/sdk         | floor        | instructions/floor         | <= 1.30
user-space instructions, camera by name     | instructions/sdk-by-name | floor        | instructions/floor-by-name | <= 1.30
user-space instructions, camera by address  | instructions/sdk         | libcurl easy | instructions/curl          | < 1.00
processor time of the client's thread       | cpu/request/sdk          | floor        | cpu/request/floor
processor time of the client's thread       | cpu/request/sdk          | libcurl easy | cpu/request/curl
time until the reply is there               | real/request/sdk         | floor        | real/request/floor
time until the reply is there               | real/request/sdk         | libcurl easy | real/request/curl
requests per second, 64 threads and cameras | rate/crowd/sdk           | floor        | rate/crowd/floor
An upload of 9 MB to a simulated camera
time until the camera has confirmed it      | real/upload/sdk          | curl -F      | real/upload/curl           | <= 2.00
ROWS
    for size in 1 20; do
        readers "a $size KB reply of lines \"OK key=value\"" ok "$size" KxSscanf KxSscanf
        readers "a $size KB reply of INI lines \"key=value\"" ini "$size" inirw iniGetValueFromStr
    done
    echo "Heap"
    echo "growth over $many requests | bytes/heap_growth | | | <= 0 B"
    echo "taken while 9 MB go up | bytes/upload_heap | | | < 2000000 B"
}

readers() { # where from, style, size, our reader in the facts and in the table
    echo "Ten values out of $1"
    for other in strstr+sscanf string_view::find unordered_map; do
        echo "$5 | cpu/$2/$4/$3K | $other | cpu/$2/$other/$3K"
    done
}

scripts/setup.sh
step "Building ..."
cmake --preset release -DKX_BUILD_BENCH=ON >/dev/null
cmake --build build/release --target kx_bench -- --quiet
rm -rf "$results"
mkdir -p "$results"
measure
awk -f scripts/bench_table.awk <(facts) <(rows)
cat <<'NOTE'

ratio = ours / the alternative's, both taken in this run: of requests per second more is better, of all else less.
Times vary with the machine and with what else it does; compare ratios of the same run. Instruction counts hardly vary.
NOTE
