#!/usr/bin/env bash
# Measures the SDK against what one would use in its place and prints a table of ratios: scripts/bench.sh
# The raw figures, and profiles for callgrind_annotate, stay in build/release/bench-results.
set -euo pipefail
cd "$(dirname "$0")/.."

counted=100    # requests a client, for the instruction count
many=100000    # requests, for the heap
bench=build/release/bin/kx_bench
results=build/release/bench-results

step() { echo "$*" >&2; }

# Runs a command whose output matters only when it fails.
quietly() {
    "$@" >"$results/log" 2>&1 || { cat "$results/log" >&2; exit 1; }
}

scripts/setup.sh
step "Building ..."
cmake --preset release -DKX_BUILD_BENCH=ON >/dev/null
cmake --build build/release --target kx_bench -- --quiet
rm -rf "$results"
mkdir -p "$results"

step "Counting user-space instructions ..."
quietly valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file="$results/callgrind" \
    "$bench" --instructions "$counted"
step "Taking times, about a minute ..."
quietly "$bench" --benchmark_min_time=0.1 --benchmark_repetitions=9 --benchmark_report_aggregates_only=true \
    --benchmark_enable_random_interleaving=true --benchmark_out="$results/times.csv" --benchmark_out_format=csv
step "Sending $many requests, half a minute or so ..."
"$bench" --heap "$many" >"$results/facts"

# One fact a line, "NAME VALUE": instructions/CLIENT, and real/, cpu/ and rate/BENCHMARK (nanoseconds, per second).
awk -v counted="$counted" '
    /^desc: Trigger: Client Request: / { name = $NF }
    /^totals: / { print "instructions/" name, $2 / counted }' "$results"/callgrind.* >>"$results/facts"
awk -F, '
    /_best"/ {
        name = $1
        gsub(/"|_best|\/real_time|\/threads:[0-9]+/, "", name)
        print "real/" name, $3; print "cpu/" name, $4; print "rate/" name, 1e9 / $3
    }' "$results/times.csv" >>"$results/facts"

# The table. Rows: what | our fact | the alternative | its fact | a figure's divisor and unit | target for the ratio.
awk -F ' *[|] *' -v facts="$results/facts" -v many="$many" '
    function fact(name) {
        if (!(name in value)) { print "no fact " name > "/dev/stderr"; failed = 1; exit 1 }
        return value[name]
    }
    function figure(name, divisor, unit) { return sprintf(divisor > 1 ? "%.1f %s" : "%.0f %s", fact(name) / divisor, unit) }
    function verdict(met) { return met ? "met" : "MISSED" }
    BEGIN {
        while ((getline line < facts) > 0) { split(line, pair, " "); value[pair[1]] = pair[2] }
        form = "%-46s %13s   %-29s %13s %7s   %s\n"
        printf form, "what", "ours", "alternative", "its", "ratio", "target"
    }
    NF < 2 { print "\n" $1; next }
    {
        ratio = fact($2) / fact($4)
        goal = $7 == "" ? "" : $7 " " verdict($7 ~ /^<=/ ? ratio <= substr($7, 4) : ratio < substr($7, 3))
        printf form, "  " $1, figure($2, $5, $6), $3, figure($4, $5, $6), sprintf("%.2f", ratio), goal
    }
    END {
        if (failed) exit 1
        print ""
        printf form, "Heap growth over " many " requests", fact("heap_growth") " B", "-", "-", "-", "0 " verdict(fact("heap_growth") == 0)
    }' <<'ROWS'
A request to a simulated camera (the floor: sockets alone, one resolution, a request made beforehand)
user-space instructions, camera by address   | instructions/sdk         | floor                | instructions/floor         | 1    |     | <= 1.30
user-space instructions, camera by name      | instructions/sdk-by-name | floor                | instructions/floor-by-name | 1    |     | <= 1.30
user-space instructions, camera by address   | instructions/sdk         | libcurl easy         | instructions/curl          | 1    |     | < 1
time                                         | real/request/sdk         | floor                | real/request/floor         | 1000 | us  |
time                                         | real/request/sdk         | libcurl easy         | real/request/curl          | 1000 | us  |
requests per second, 64 threads and cameras  | rate/crowd/sdk           | floor                | rate/crowd/floor           | 1    | /s  |
Ten values out of a 1 KB reply of lines "OK key=value"
KxSscanf                                     | cpu/ok/KxSscanf/1K       | strstr and sscanf    | cpu/ok/sscanf/1K           | 1000 | us  |
KxSscanf                                     | cpu/ok/KxSscanf/1K       | string_view::find    | cpu/ok/string_view/1K      | 1000 | us  |
KxSscanf                                     | cpu/ok/KxSscanf/1K       | all of it into a map | cpu/ok/unordered_map/1K    | 1000 | us  |
Ten values out of a 20 KB reply of lines "OK key=value"
KxSscanf                                     | cpu/ok/KxSscanf/20K      | strstr and sscanf    | cpu/ok/sscanf/20K          | 1000 | us  |
KxSscanf                                     | cpu/ok/KxSscanf/20K      | string_view::find    | cpu/ok/string_view/20K     | 1000 | us  |
KxSscanf                                     | cpu/ok/KxSscanf/20K      | all of it into a map | cpu/ok/unordered_map/20K   | 1000 | us  |
Ten values out of 1 KB of INI lines "key=value"
iniGetValueFromStr                           | cpu/ini/inirw/1K         | strstr and sscanf    | cpu/ini/sscanf/1K          | 1000 | us  |
iniGetValueFromStr                           | cpu/ini/inirw/1K         | string_view::find    | cpu/ini/string_view/1K     | 1000 | us  |
iniGetValueFromStr                           | cpu/ini/inirw/1K         | all of it into a map | cpu/ini/unordered_map/1K   | 1000 | us  |
Ten values out of 20 KB of INI lines "key=value"
iniGetValueFromStr                           | cpu/ini/inirw/20K        | strstr and sscanf    | cpu/ini/sscanf/20K         | 1000 | us  |
iniGetValueFromStr                           | cpu/ini/inirw/20K        | string_view::find    | cpu/ini/string_view/20K    | 1000 | us  |
iniGetValueFromStr                           | cpu/ini/inirw/20K        | all of it into a map | cpu/ini/unordered_map/20K  | 1000 | us  |
ROWS

cat <<'NOTE'

ratio = ours / the alternative's, taken in one run: of requests per second more is better, of all else less. Times vary
with the machine and with what else it does; compare ratios of the same run. Instruction counts hardly vary.
NOTE
