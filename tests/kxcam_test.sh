#!/usr/bin/env bash
# kxcam as its users meet it: what it says, its exit codes, and what reaches the camera. kxcam_test.sh BIN_DIR
set -uo pipefail
export LC_ALL=C.UTF-8
export KXCAM_PASSWORD=pass-of-the-login
bin=$1
scratch=$(mktemp -d)
simulators=()
credentials=$(printf 'admin:%s' "$KXCAM_PASSWORD" | base64)
trap 'kill "${simulators[@]}"; rm -rf "$scratch"' EXIT
failures=0

fail() {
    failures=$((failures + 1))
    printf 'FAILED: %s\n  %s\n' "$1" "$command"
    sed 's/^/  | /' "$scratch/out" "$scratch/err"
}
# simulate NAME OPTIONS...: starts a camera; its port becomes $NAME, its log is $scratch/NAME
simulate() {
    : >"$scratch/$1"
    "$bin/kxsim" --port 0 --password "$KXCAM_PASSWORD" "${@:2}" >"$scratch/$1" &
    simulators+=($!)
    until grep -q listening "$scratch/$1"; do
        kill -0 $! || exit 1
        sleep 0.01
    done
    declare -g "$1=$(sed -n '1s/.*://p' "$scratch/$1")"
}
# expect STATUS PATTERN COMMAND...: the exit code, and what the output holds, taken as one line with single blanks.
# Never does it hold the password or a line of the library, and what is no result stands marked on standard error.
expect() {
    local status=0 out err said line
    command="${*:3}"
    "${@:3}" >"$scratch/out" 2>"$scratch/err" </dev/null || status=$?
    read -rd '' -a out <"$scratch/out"
    read -rd '' -a err <"$scratch/err"
    said="${out[*]} ${err[*]}"
    [ $status = "$1" ] || fail "exit code $status instead of $1"
    [[ $said =~ $2 ]] || fail "does not say: $2"
    [[ ! $said =~ $KXCAM_PASSWORD|====|KxLog ]] || fail "says too much"
    while read -r line; do
        [[ $line =~ ^(kxcam: |Run ) ]] || fail "does not mark this as a remark: $line"
    done <"$scratch/err"
}
# The same, when the camera must not hear of it.
expect_unsent() {
    local before
    before=$(wc -l <"$scratch/ti")
    expect "$@"
    [ "$before" = "$(wc -l <"$scratch/ti")" ] || fail "asked the camera"
}
kxcam() { "$bin/kxcam" --host 127.0.0.1 --port "$@"; }
# tell PORT QUERY: a request that kxcam would not make
tell() {
    exec 9<>"/dev/tcp/127.0.0.1/$1" || return 1
    printf 'GET /vb.htm?%s HTTP/1.1\r\nAuthorization: Basic %s\r\n\r\n' "$2" "$credentials" >&9
    cat <&9 >/dev/null
    exec 9>&-
}
# Whether the output is what kxcam calls JSON: one object of texts, numbers, truths and nulls, or of such objects.
is_json() {
    local value='("([^"\\[:cntrl:]]|\\["\\bfnrt]|\\u[0-9a-f]{4})*"|-?[0-9]+|true|false|null)' key='"[a-z0-9_]+": '
    local flat="\{( +$key$value,)* +$key$value *\}"
    [[ $(tr -d '\n' <"$scratch/out") =~ ^($flat|\{("  "$key($flat|null),)*"  "$key($flat|null)\})$ ]]
}
# piped LINE PORT ARGUMENTS...: kxcam with a line to read
piped() { printf '%s\n' "$1" | kxcam "${@:2}"; }

ti='' page='' mover='' # ports
simulate ti
simulate page --model KX-C300B

# Every area, on both families: a table, JSON, and a set that changes what it is given and nothing else.
while read -r area key value others; do
    for camera in "$ti" "$page"; do
        tell "$camera" 'wepkey2=k&ftppassword=k&smtppwd=k&ddnspassword=k&ftppath=/a%20b'
        expect 0 "$key [^ ]" kxcam "$camera" get "$area"
        expect 0 "\"$key\": " kxcam "$camera" get "$area" --json --show-secrets
        is_json || fail 'is not JSON'
        cp "$scratch/out" "$scratch/before"
        # shellcheck disable=SC2086 # several words, or none
        expect 0 "$key [^ ]+ -> $value " kxcam "$camera" set "$area" "$key=$value" $others
        expect 0 "\"$key\": \"?$value\"?,? " kxcam "$camera" get "$area" --json --show-secrets
        [ "$(diff "$scratch/before" "$scratch/out" | grep -c '^>')" = 1 ] || fail 'another setting has changed'
    done
done <<'END'
network gateway 10.0.0.7
system title gate
wifi wifissid attic
ddns ddnsenable 1
smtp smtpauth 2
ftp ftpip ftp.example.org
upnp upnpname cam
upnp scanupnp 0
ports onvifport 9000 subrtspport=555
audio alarmlevel 40
ptzport ptzprotocol 1
tracking auto_tracking_sensitivity 7
END
expect 5 'did not keep the new ddnsdomain: given www.x.org, it has \(empty\)' \
    kxcam "$page" set ddns ddnsdomain=www.x.org

# The clock runs: what is read back is not to the second what was given.
expect 0 'system_datetime_zonename_tz CET ' kxcam "$ti" get clock
expect 0 'datetimetype 0 -> 1 .*hour [0-9]+ (-> [56]|\(as before\)) .*minute [0-9]+ (-> 59|-> 0|\(as before\)) ' \
    kxcam "$ti" set clock system_datetime_datetimetype=1 hour=5 minute=59 second=59
expect 0 '"date": "20[0-9/]+", .*"hour": [56],' kxcam "$ti" get clock --json
is_json || fail 'is not JSON'
expect 0 '^system_datetime_zonename_tz CET -> UTC $' kxcam "$ti" set clock system_datetime_zonename_tz=UTC
expect 5 'did not keep the new year: given 1999, it has 20.*with system_datetime_datetimetype=1 or 2' \
    kxcam "$ti" set clock system_datetime_datetimetype=0 year=1999
expect_unsent 2 "'month' takes 1 to 12, not 0" kxcam "$ti" set clock month=0

# What the camera is and can do.
expect 0 'productmodel KX-C200T .* capabilities memory card, audio, alarm ports, analogue video output $' \
    kxcam "$ti" info
expect 0 '"cputype": "hi3516a", .* "capabilities": \[ "memorycard", "audio", "alarm", "ptz", "sipphone" \] \}' \
    kxcam "$page" info --json
expect 0 'bnc yes .* sipphone no .* system_ptz_motion_max_zoom_times \(not told\) ' kxcam "$ti" capabilities
expect 0 '"bnc": false, .*"system_vca_type": 1,' kxcam "$page" capabilities --json
is_json || fail 'is not JSON'

# Updates of the firmware.
expect 0 '^OK checkupdate=2\.1\.0 $' kxcam "$ti" update check
expect 0 '"answer": "OK checkupdate=2\.1\.0"' kxcam "$ti" update check --json
expect 1 'tells no progress: no update is running' kxcam "$ti" update watch
expect 0 "follow it with: kxcam --host 127.0.0.1 --port $ti update watch" kxcam "$ti" update start 2.1.0
expect 0 '^0 % 25 % 50 % 75 % 100 % $' kxcam "$ti" update watch --interval 1
expect 0 '^\{"progress": 100\} $' kxcam "$ti" update watch --json
expect 0 'softversion 2\.1\.0 ' kxcam "$ti" info
expect 0 '"started": true' kxcam "$ti" update start 9.9 --json
expect 1 'failed: it reports error -1' kxcam "$ti" update watch
expect_unsent 2 "the text 'x&y' contains '&'" kxcam "$ti" update start 'x&y'
expect_unsent 2 "Run 'kxcam update --help'" kxcam "$ti" update

# Restart and factory settings, which are asked about.
simulate brief --restart-time 1
simulate lasting --restart-time 3600000
expect 0 '^restarting $' kxcam "$lasting" reboot
expect 4 'could not be reached' kxcam "$lasting" get system
for keep in ip user all-defaults; do
    until tell "$brief" 'ftpip=here&gateway=10.9.9.9&adduser=bob:pw:2:0' 2>"$scratch/err"; do sleep 0.01; done
    expect 2 'nothing was done: .* Add --yes' kxcam "$brief" reset --keep $keep
    expect 0 '^reset; the camera restarts $' kxcam "$brief" reset --keep $keep --yes
    until tell "$brief" '' 2>"$scratch/err"; do sleep 0.01; done
    expect 0 'ftpip \(empty\)' kxcam "$brief" get ftp
    [ $keep = ip ] && gateway=10.9.9.9 || gateway=192.168.1.1
    expect 0 "gateway ${gateway//./\\.} " kxcam "$brief" get network
    [ $keep = user ] && others='bob authority 2 privilege 0 ' || others=''
    expect 0 "^admin authority 10 privilege 255 $others$" kxcam "$brief" users list
done
expect_unsent 2 '--keep is required' kxcam "$ti" reset --yes
expect_unsent 2 'all not in' kxcam "$ti" reset --keep all --yes

# Areas of streams: all at once, or one.
for area in video osd; do
    expect 0 '^main stream [^ ]+ [^ ]+ .* sub stream [^ ]+ [^ ]+ .* third stream [^ ]+ [^ ]+ ' kxcam "$page" get $area
    expect 0 '"main": \{.*\}, "sub": \{.*\}, "third": \{' kxcam "$page" get $area --json
    is_json || fail 'is not JSON'
    expect 0 '"main": \{.*"third": null \}' kxcam "$ti" get $area --json
    is_json || fail 'is not JSON'
    expect 1 'the answer holds none of its settings' kxcam "$ti" get $area --stream third
    expect_unsent 2 'Give one with --stream: main, sub, third' kxcam "$ti" set $area width=1
    expect_unsent 2 "no stream 'fourth'\. Streams: main, sub, third" kxcam "$ti" set $area --stream fourth width=1
    expect_unsent 0 'Keys of .* main: .* Keys of .* sub: .* Keys of .* third: ' kxcam "$ti" set $area
done
expect_unsent 2 'ftp has no streams' kxcam "$ti" set ftp --stream main ftpip=x
expect 0 'third stream: \(not told\)' kxcam "$ti" get video
expect_unsent 2 "'framerate' takes 1 to 30, not 31" kxcam "$ti" set video --stream third framerate=31
waiting='waiting: the camera restarts its encoder'
expect 0 "^framerate 25 -> 12 kxcam: $waiting" kxcam "$ti" set video --stream main framerate=12
expect 5 "^framerate 10 -> 12 jpegquality 50 .as before. smartlevel 5 -> 6 kxcam: $waiting.*jpegquality" \
    kxcam "$page" set video --stream third framerate=12 smartlevel=6 jpegquality=9
! grep -q -e page=video.0 -e page=video.1 "$scratch/page" || fail 'wrote to other streams'
caption='R&D = 100%41 /"é'
expect 0 'overlaytext .* -> R&D = 100%41 /"é $' kxcam "$page" set osd --stream sub "overlaytext=$caption"
expect 0 'main stream .*overlaytext main stream .*sub stream .*overlaytext R&D = 100%41 /"é ' kxcam "$page" get osd
expect 5 'did not keep the new osdfontsize: .*not told' kxcam "$ti" set osd --stream main osdfontsize=3
expect 5 'audioagc .* hasaudioout=1 only' kxcam "$page" set audio audioagc=1
expect 0 'audioagc 0 -> 1 hasaudioout 1 \(sent\) $' kxcam "$page" set audio audioagc=1 hasaudioout=1

# Moving the camera.
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

# Secrets, and texts made to do harm.
expect 0 'ftppassword \*{8} ' kxcam "$ti" get ftp
expect 0 '"ftppassword": "\*{8}"' kxcam "$ti" get ftp --json
expect 0 'ftppassword k ' kxcam "$ti" get ftp --show-secrets
expect 0 'ftppassword \*{8} -> \*{8} $' piped 's3cr3t word' "$ti" set ftp ftppassword=-
expect 0 'ftppassword s3cr3t word ' kxcam "$ti" get ftp --show-secrets
expect 0 '/"\\\[é ' kxcam "$ti" set ftp 'ftppath=/"\[é'
expect 0 '"/\\"\\\\\[é"' kxcam "$ti" get ftp --json
is_json || fail 'is not JSON'
expect 0 '"ftpipport": 21,' kxcam "$ti" set ftp ftpipport=21 --json
is_json || fail 'is not JSON'
command='kxcam get ftp --json --verbose'
kxcam "$ti" get ftp --json --verbose >"$scratch/out" 2>"$scratch/err"
is_json || fail 'mixes the library into its JSON'
grep -q == "$scratch/err" || fail 'does not show what the library says'
tell "$ti" 'ftppath=%1B[2J%FF'
expect 0 'ftppath \\x1b\[2J' kxcam "$ti" get ftp
expect 0 '"ftppath": "\\u001b\[2J�"' kxcam "$ti" get ftp --json
tell "$ti" 'ftppath=/a%26ftpuser=thief'
expect 2 "present value of 'ftppath' contains '&'.* give ftppath=… too" kxcam "$ti" set ftp ftpipport=22
expect 0 'ftpipport 21 -> 22 ftppath .* -> / ' kxcam "$ti" set ftp ftpipport=22 ftppath=/
long=$(printf %255s '' | tr ' ' s)
expect 2 'would take 1[0-9]{3} characters' \
    kxcam "$ti" set smtp "smtpsender=$long" "emailuser=$long" "smtppwd=$long$long"
tell "$ti" "ddnspassword=$long$long&ddnsurl=$long$long"
expect 1 'did not tell all of ddns' kxcam "$ti" set ddns ddnshttpport=81
! grep -q -e '&ftpipport=22.*thief' -e '&smtp.*=sss' -e '&ddnshttpport=81' "$scratch/ti" || fail 'was sent'

# Mistakes at the keyboard.
expect_unsent 2 "no key 'ftphost'\. Its keys: ftpip, ftpipport," kxcam "$ti" set ftp ftphost=a
expect_unsent 2 "'macaddress' is read only" kxcam "$ti" set network netip=1.2.3.4 macaddress=1
expect_unsent 2 "'scanupnp' takes 0 to 255, not 256" kxcam "$ti" set upnp scanupnp=256
expect_unsent 2 "'httpport' takes 0 to 65535, not 80800" kxcam "$ti" set ports subrtspport=1 httpport=80800
expect_unsent 2 "'smtpauth' takes -2147483648 to 2147483647" kxcam "$ti" set smtp smtpauth=2147483648
expect_unsent 2 "'ftpipport' takes a whole number, not '21 '" kxcam "$ti" set ftp 'ftpipport=21 '
expect_unsent 2 "value of 'ftppassword' has 32 bytes; the field holds 31" \
    kxcam "$ti" set ftp "ftppassword=$(printf %32s x)"
expect_unsent 2 "contains '&'" kxcam "$ti" set ftp 'ftppath=/a&reboot'
expect_unsent 2 'hexadecimal' kxcam "$ti" set ftp 'ftppath=/%41'
expect_unsent 2 'line break' kxcam "$ti" set ftp $'ftppath=/\r\nX: y'
expect_unsent 2 'standard input ended' kxcam "$ti" set ftp ftppassword=-
expect_unsent 2 'not of the form key=value' kxcam "$ti" set ftp ftpip
expect_unsent 2 'add subrtspport=…: every set of ports writes it' kxcam "$ti" set ports httpport=81
expect_unsent 2 "no area 'siren'\. Areas: network, wifi," kxcam "$ti" get siren
expect_unsent 2 "--bogus.* Run 'kxcam get --help'" kxcam "$ti" get ftp --bogus
expect_unsent 2 'Give one of: discover get set test-smtp info capabilities reboot reset ptz update users .*kxcam --help' \
    kxcam "$ti"
expect_unsent 2 'Give one of: list add delete password type .*kxcam users --help' kxcam "$ti" users
expect_unsent 2 'Give its address with --host' "$bin/kxcam" get ftp
expect_unsent 2 'password is longer than 30 bytes' \
    env KXCAM_PASSWORD="$(printf %31s x)" "$bin/kxcam" --host 127.0.0.1 --port "$ti" get ftp
expect_unsent 2 'no password: set the environment variable KXCAM_PASSWORD' \
    setsid -w env -u KXCAM_PASSWORD "$bin/kxcam" --host 127.0.0.1 --port "$ti" get ftp
expect_unsent 0 'Keys of ftp: .* ftppassword text, at most 31 bytes, secret ' kxcam "$ti" set ftp
expect_unsent 0 'Usage: kxcam .* Exit codes: ' "$bin/kxcam" --help

# Cameras that do not do as they are told.
expect 3 'login to 127.0.0.1:[0-9]+ as admin failed: .* Check --user and the password' \
    env KXCAM_PASSWORD=guess "$bin/kxcam" --host 127.0.0.1 --port "$ti" get ftp
expect 3 'as guest failed: ' kxcam "$ti" get ftp --user guest
expect 1 'could not send the test mail; check .kxcam get smtp' kxcam "$ti" test-smtp
expect 0 '' kxcam "$ti" set smtp smtpip=mail.example.org
expect 0 '^sent $' kxcam "$ti" test-smtp
expect 0 'netip 127.0.0.1 -> 10.1.2.3 .*not read back.* Log in there: kxcam --host 10.1.2.3 --port' \
    kxcam "$ti" set network netip=10.1.2.3
expect 0 'DHCP server, which lists it under .* --host ADDRESS' kxcam "$ti" set network dhcpenable=1
expect 0 'answers on port 8081.* --host 127.0.0.1 --port 8081 get ports' \
    kxcam "$ti" set ports httpport=8081 subrtspport=555
everything=(scanupnp=0 upnpenable=1 upnpname=x upnptype=1 upnphttpport=1 upnprtspport=1)
while read -r name status options; do
    # shellcheck disable=SC2086 # the options are meant to be split
    simulate "$name" $options
    expect "$status" 'failed: .* (Check|Log in as)' kxcam "${!name}" set ftp ftpip=x
    expect "$status" 'failed: ' kxcam "${!name}" set upnp "${everything[@]}"
    expect "$status" 'failed: ' kxcam "${!name}" get upnp
    for verb in info capabilities 'update check' 'get video' 'reset --keep ip --yes'; do # one restarts even as it fails
        # shellcheck disable=SC2086
        expect "$status" 'failed: ' kxcam "${!name}" $verb
    done
    ! grep -Eq '(ftpip|upnpinfo|scanupnp)=[^ ]' <(sed 's/paratest=//g' "$scratch/$name") || fail 'wrote to it'
done <<'END'
refuse 4 --fault refuse
garbage 1 --fault garbage
cut 1 --fault cut-short
broken 1 --fault status --fault-status 500
forbidden 3 --fault status --fault-status 403
END

# Users.
users() { kxcam "$ti" users "$@"; }
# with PASSWORD COMMAND...: a password for the user that is added or changed
with() { KXCAM_NEW_PASSWORD=$1 "${@:2}"; }
expect 0 '^admin authority 10 privilege 255 $' users list
expect 0 '^added bob $' with first users add bob --authority 7
expect 0 '^7 $' users type bob
expect 0 '^\{ "name": "bob", "authority": 7 \} $' users type bob --json
expect 1 "has a user 'bob' already" with first users add bob
expect 0 '^added eve $' piped 'e v%e' "$ti" users add eve
expect 0 '"slot": 2, "name": "eve", "authority": 2, "privilege": 0 \} \] \} $' users list --json
expect 0 ' eve ' env KXCAM_PASSWORD='e v%e' "$bin/kxcam" --host 127.0.0.1 --port "$ti" --user eve users list
expect 0 '^\{ "changed": "bob" \} $' with second users password bob --json
expect 0 '^7 $' env KXCAM_PASSWORD=second "$bin/kxcam" --host 127.0.0.1 --port "$ti" --user bob users type bob
expect 0 '^changed bob $' env KXCAM_PASSWORD=second KXCAM_NEW_PASSWORD=third \
    "$bin/kxcam" --host 127.0.0.1 --port "$ti" --user bob users password bob # his session goes on
expect 1 "has no user 'ghost'" with new users password ghost
expect 1 "has no user 'ghost'" users type ghost
expect 1 "has no user 'ghost'" users delete ghost --yes
! grep -q 'user=ghost' "$scratch/ti" || fail 'was sent'
expect_unsent 2 "nothing was done: .* will lose its user 'bob'\. Add --yes" users delete bob
expect_unsent 2 "'admin' is the user that kxcam logs in as" users delete admin --yes
while IFS='|' read -r name reason; do
    expect_unsent 2 "the user name $reason" with new users add "$name"
    expect_unsent 2 "the user name $reason" users delete "$name" --yes
done <<END
|is empty
a:b|contains ':'
a&b|contains '&'
a=b|contains '='
a b|contains a blank
a$(printf '\001')b|contains a line break or another control character
a%41b|contains '%'
$(printf %32s '' | tr ' ' n)|is longer than 31 bytes
END
expect_unsent 2 "the new password contains ':'" with a:b users add x
expect_unsent 2 "the new password contains '&'" with 'a&b' users password bob
expect_unsent 2 'the new password is longer than 30 bytes' with "$(printf %31s x)" users add x
expect_unsent 2 'standard input ended before it gave the new password' users add x
expect_unsent 2 'authority' with new users add x --authority 256
expect 0 '^deleted bob $' users delete bob --yes
expect 3 'login to .* as bob failed' \
    env KXCAM_PASSWORD=third "$bin/kxcam" --host 127.0.0.1 --port "$ti" --user bob users list
for slot in 1 3 4 5 6 7 8 9; do expect 0 added with new users add "user$slot"; done
expect 1 'as many users as it can keep' with new users add onemore
expect 1 'names none\. Check that --host and --port' "$bin/kxcam" --host 127.0.0.1 --port "${garbage:?}" users list

# On a terminal, what is needed is asked for, and no password shows.
cam="'$bin/kxcam' --host 127.0.0.1 --port $ti"
# at_terminal STATUS COMMAND SAYS [PROMPT ANSWER]...: a command on a terminal, and what it says in the end
at_terminal() {
    local status=0 expected=$1 says=$3 terminal
    command="$2 (on a terminal)"
    [ -p "$scratch/keys" ] || mkfifo "$scratch/keys"
    : >"$scratch/out" # a prompt of the command before must not pass for one of this
    script -qec "$2" /dev/null <"$scratch/keys" >"$scratch/out" &
    terminal=$!
    exec 8>"$scratch/keys"
    shift 3
    while [ $# -gt 0 ]; do
        until grep -q "$1" "$scratch/out" || ! kill -0 $terminal; do sleep 0.01; done
        echo "$2" >&8
        shift 2
    done
    wait $terminal || status=$?
    exec 8>&-
    [ $status = "$expected" ] || fail "exit code $status instead of $expected"
    grep -q "$says" "$scratch/out" || fail "does not say: $says"
    ! grep -q -e "$KXCAM_PASSWORD" -e n3w "$scratch/out" || fail 'shows a password'
}
ask_on_a_terminal() {
    at_terminal 0 "env -u KXCAM_PASSWORD $cam get smtp" 'mail server' 'Password of admin at' "$KXCAM_PASSWORD"
    at_terminal 2 "$cam users delete eve" 'nothing was done' 'lose its user .eve.' y
    at_terminal 0 "$cam users delete eve" 'deleted eve' 'lose its user .eve.' yes
    at_terminal 2 "$cam users password user3" 'passwords differ' \
        'New password of user3' n3w 'The same again' n3wer
    at_terminal 0 "$cam users password user3" 'changed user3' 'New password of user3' n3w 'The same again' n3w
}
# A reset is done when a person says yes, and a progress bar grows in place.
consent_on_a_terminal() {
    local answer
    command='kxcam on a terminal: consent and progress'
    until tell "$brief" 'ftpip=here' 2>"$scratch/err"; do sleep 0.01; done
    for answer in y no yes; do
        kxcam "$brief" get ftp >"$scratch/ftp" 2>&1
        grep -q 'ftpip .*here' "$scratch/ftp" || fail "does not take '$answer' for a no"
        script -qec "'$bin/kxcam' --host 127.0.0.1 --port $brief reset --keep ip" /dev/null \
            <<<"$answer" >"$scratch/out"
        grep -q 'all settings but its network address' "$scratch/out" || fail 'does not say what is lost'
    done
    until kxcam "$brief" update start 2.1.0 >"$scratch/out" 2>&1; do sleep 0.01; done
    kxcam "$brief" get ftp >"$scratch/ftp"
    grep -q 'ftpip .*(empty)' "$scratch/ftp" || fail 'does not reset'
    script -qec "'$bin/kxcam' --host 127.0.0.1 --port $brief update watch --interval 1" /dev/null \
        </dev/null >"$scratch/out"
    tr '\r' '\n' <"$scratch/out" | grep -q '^\[#\{20\}-\{20\}\] 50 %$' || fail 'has no progress bar'
    [ "$(wc -l <"$scratch/out")" = 1 ] || fail 'lets the bar leave its line'
}
if script -qec true /dev/null >/dev/null 2>&1; then
    ask_on_a_terminal
    consent_on_a_terminal
else
    echo 'skipped: prompts and the progress bar, which are tested where the system has pseudo-terminals'
fi

[ $failures = 0 ]
