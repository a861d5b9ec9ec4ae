#!/usr/bin/env bash
# Moving a camera, as the users of kxcam meet it. kxcam_ptz_test.sh BIN_DIR
set -uo pipefail
# shellcheck source=tests/kxcam_helpers.sh
. "$(dirname "$0")/kxcam_helpers.sh"

ti='' mover='' # ports
simulate ti
simulate mover --model KX-C400A
ptz() { kxcam "$mover" ptz "$@"; }
sent() { grep -qF -- "$1" "$scratch/mover" || fail "does not send $1"; }
while IFS='|' read -r query arguments; do
    # shellcheck disable=SC2086 # several words
    expect 0 "^${arguments%% --*} \$" ptz $arguments
    sent "$query"
done <<'END'
?language=ie&ptzspeed=9&ipncptz=up%000|move up --speed 9
=ie&ipncptz=fishptzleftdown=2:0|move down-left --view 2
=ie&ipncptz=stop=2|stop --view 2
=ie&ipncptz=zoompos=40|zoom 40
=ie&ptzspeed=3&ipncptz=zoomout%000|zoom out --speed 3
=ie&ipncptz=focusin%000|focus near
=ie&irisstep=4&irismanualstep=0&ipncptz=irisout%000|iris close
=ie&irismode=1|iris mode1
=ie&ipncptz=lighton|light on
=ie&brushon|wiper on
=set.whiteled.status&white_led_status=1|led on
=set.auto.tracking&auto_tracking_enable=1&auto_tracking_show=1|tracking on
END
expect 0 '^set preset 3 $' ptz preset set 3 'dock 100%'
sent '=setpreset=3:dock%20100%'
expect 0 '^going to preset 3 $' ptz preset go 3
expect 0 '^patrol $' ptz patrol
expect 0 '^zoompos 37 zoomnumber 7 .* lens_iris_mode 1 lightstatus 1 white_led_status 1 ptz_run_status 2 ' ptz status
expect 0 '^cleared preset 3 $' ptz preset clear 3
expect 0 '"ptz_run_status": 2,' ptz status --json
is_json || fail 'is not JSON'
expect 0 '^following $' ptz tracking follow 0 0.25 0.5 1
expect 0 '^3 in a picture of 1920 x 1080 .* object 3 type 1, from 0,270 to 960,1080 $' ptz tracking points
expect 0 '"height": 1080, "points": \[ \{ "id": 1,' ptz tracking points --json
expect 0 ' day 1 08:00-18:30 day 2 06:00-07:00 22:00-24:00 day 3 off ' \
    ptz tracking schedule 2 06:00-07:00 22:00-24:00
expect 0 '^\{ "days": \[ \[\], \[ "08:00-18:30" \], \[\], ' ptz tracking schedule 2 off --json
expect_unsent 2 "'07:60-08:00' is no period" kxcam "$ti" ptz tracking schedule 2 07:60-08:00
expect_unsent 2 "the name 'a&b' contains '&'" kxcam "$ti" ptz preset set 1 'a&b'
expect_unsent 2 "'focus auto' ends by itself" kxcam "$ti" ptz focus auto --for 1
expect_unsent 2 'sideways not in' kxcam "$ti" ptz move sideways
expect 0 '^\{ "done": "move up, stopped" \} $' ptz move up --for 0.01 --json
[[ $(tail -n 2 "$scratch/mover") =~ =up%000.*=stop$ ]] || fail 'does not stop'
# begun SIGNAL ARGUMENTS...: kxcam moves the camera, and goes on to do so when this returns; $mover_id is its process
begun() {
    command="kxcam ptz ${*:2} (interrupted by $1)"
    : >"$scratch/mover"
    env --default-signal="$1" "$bin/kxcam" --host 127.0.0.1 --port "$mover" ptz "${@:2}" \
        >"$scratch/out" 2>"$scratch/err" &
    mover_id=$!
    until grep -q "ipncptz=" "$scratch/mover"; do sleep 0.01; done
}
for signal in INT TERM; do
    begun $signal move left --for 3600 --view 1
    kill -$signal $mover_id
    wait $mover_id
    [ $? = $((128 + $(kill -l $signal))) ] || fail 'does not end by the signal'
    sent '=ie&ipncptz=stop=1'
    grep -q 'interrupted; the camera is stopped' "$scratch/err" || fail 'does not tell'
done
begun TERM zoom in --for 3600
kill "${simulators[-1]}"
wait "${simulators[-1]}"
unset 'simulators[-1]'
kill $mover_id
wait $mover_id
[ $? = 4 ] || fail 'takes a stop that failed for a stop'
grep -q "may still be moving! Try: kxcam .* --port $mover ptz stop" "$scratch/err" || fail 'does not warn'

[ $failures = 0 ]
