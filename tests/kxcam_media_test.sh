#!/usr/bin/env bash
# kxcam live, snapshot, record and play as their users meet them. kxcam_media_test.sh BIN_DIR
set -uo pipefail
# shellcheck source=tests/kxcam_helpers.sh
. "$(dirname "$0")/kxcam_helpers.sh"

plain='' without='' shy='' leaving='' begun='' # ports
simulate plain
simulate without --no-streams
simulate shy --stream-fault refuse-password
simulate leaving
# told KEY: a number of the JSON that was printed last
told() { sed -n "s/.*\"$1\": \([0-9]*\).*/\1/p" "$scratch/out"; }
holds() { [ "$(head -c "${#2}" "$1")" = "$2" ] || fail "$1 is something else"; }
# begin PORT ARGUMENT...: kxcam in the background. Job control, or the shell would have it ignore Ctrl-C.
begin() {
    command="kxcam $* &"
    : >"$scratch/out" # before it can be taken for what this one says
    set -m
    "$bin/kxcam" --host 127.0.0.1 --port "$@" >"$scratch/out" 2>"$scratch/err" &
    begun=$!
    set +m
}
# until_there COMMAND...: waits until it succeeds, as long as kxcam runs
until_there() { until "$@" || ! kill -0 "$begun"; do sleep 0.02; done; }
# is_recorded SIZE: so much is on the disk of a recording that goes on
is_recorded() { find kxcam.* -size "+$1" 2>"$scratch/find" | grep -q avi; }
# interrupt STATUS PATTERN: Ctrl-C, and what kxcam says then
interrupt() {
    local status=0
    kill -INT "$begun"
    wait "$begun" || status=$?
    [ $status = "$1" ] || fail "exit code $status instead of $1"
    [[ $(cat "$scratch/out" "$scratch/err") =~ $2 ]] || fail "does not say: $2"
}
mkdir "$scratch/work"
cd "$scratch/work" || exit 1

# Live. How many frames come in a second is up to how busy the machine is.
begin "$plain" live
until_there grep -qE '^[0-9]+x[0-9]+  [0-9]+ frames?  [0-9.]+ a second  [0-9]+ kbit/s  0 lost  0 reconnects' "$scratch/out"
interrupt 0 '[0-9]+ frames? in [0-9.]+ seconds, [0-9.]+ [kM]B, 0 lost, 0 reconnects$'
begin "$plain" live --stream sub --frames pictures --json
until_there [ -s pictures/frame-000002.ppm ]
interrupt 0 '"reconnects": 0'
is_json || fail 'is not JSON'
width=$(told width) height=$(told height)
[ "$(find pictures -name 'frame-0*.ppm' | wc -l)" -ge "$(told decoded)" ] || fail 'saves other pictures than it counts'
holds pictures/frame-000001.ppm "P6
$width $height
255"
[ "$(stat -c %s pictures/frame-000001.ppm)" = $((9 + ${#width} + ${#height} + width * height * 3)) ] || fail 'other size'
expect 4 'opening the main stream' kxcam "$without" live
expect 4 'opening the main stream' kxcam "$shy" snapshot
expect 2 '--stream' kxcam "$plain" live --stream third
begin "$leaving" live
until_there grep -q lost "$scratch/out"
kill "${simulators[-1]}"
unset 'simulators[-1]'
until_there grep -q 'broken off' "$scratch/out"
interrupt 4 'frames? in .* broke off and is not back'

# Snapshots.
expect 0 '^saved door\.jpg, [0-9.]+ kB $' kxcam "$plain" snapshot door.jpg
holds door.jpg $'\xff\xd8\xff'
expect 0 '^saved [0-9]{8}_[0-9]{6}_[0-9]{3}\.jpg,' kxcam "$plain" snapshot --stream sub
expect 6 "can not write 'nowhere'" kxcam "$plain" snapshot nowhere/door.jpg
expect 6 "can not write 'pictures'" kxcam "$plain" record pictures

# A recording, and what it recorded.
expect 0 '"door.avi"' kxcam "$plain" record door.avi --seconds 0.5 --json
frames=$(told frames)
[ "$frames" -ge 1 ] || fail 'records nothing'
expect 0 '"finished": true' kxcam "$plain" play door.avi --speed 16 --json
is_json || fail 'is not JSON'
[ "$(told position_ms)" = "$(told length_ms)" ] || fail 'stops before the end'
expect 2 'no recording' kxcam "$plain" play door.jpg
expect 2 'FILE' kxcam "$plain" play nowhere.avi

# Ctrl-C completes a recording.
begin "$plain" record --json
until_there is_recorded 200k
interrupt 0 '\.avi"'
frames=$(told frames)
file=$(find . -name '20*.avi')
[ -z "$(find . -name 'kxcam.*')" ] || fail 'leaves a directory behind'
expect 0 '"finished": true' kxcam "$plain" play "$file" --json
[ "$(told frames)" = "$frames" ] || fail "plays other frames than the $frames recorded"
half=$(($(told length_ms) / 2))
expect 0 '"finished": false' kxcam "$plain" play "$file" --speed 1/16 \
    --seek "$((half / 1000)).$(printf %03d $((half % 1000)))" --seconds 0.2 --json
(($(told position_ms) >= half - 40 && $(told position_ms) < $(told length_ms))) || fail 'is somewhere else'
[ $failures = 0 ]
