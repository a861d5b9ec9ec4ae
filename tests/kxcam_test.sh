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
    exec 9<>"/dev/tcp/127.0.0.1/$1"
    printf 'GET /vb.htm?%s HTTP/1.1\r\nAuthorization: Basic %s\r\n\r\n' "$2" "$credentials" >&9
    cat <&9 >/dev/null
    exec 9>&-
}
# Whether the output is what kxcam calls JSON: one object of texts, numbers and nulls, or of such objects.
is_json() {
    local value='("([^"\\[:cntrl:]]|\\["\\bfnrt]|\\u[0-9a-f]{4})*"|-?[0-9]+|null)' key='"[a-z0-9]+": '
    local flat="\{( +$key$value,)* +$key$value *\}"
    [[ $(tr -d '\n' <"$scratch/out") =~ ^($flat|\{("  "$key($flat|null),)*"  "$key($flat|null)\})$ ]]
}
# piped LINE PORT ARGUMENTS...: kxcam with a line to read
piped() { printf '%s\n' "$1" | kxcam "${@:2}"; }

ti='' page='' # ports
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
wifi wifissid attic
ddns ddnsenable 1
smtp smtpauth 2
ftp ftpip ftp.example.org
upnp upnpname cam
upnp scanupnp 0
ports onvifport 9000 subrtspport=555
audio alarmlevel 40
END
expect 5 'did not keep the new ddnsdomain: given www.x.org, it has \(empty\)' \
    kxcam "$page" set ddns ddnsdomain=www.x.org

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
expect_unsent 2 "no area 'clock'\. Areas: network, wifi," kxcam "$ti" get clock
expect_unsent 2 "--bogus.* Run 'kxcam get --help'" kxcam "$ti" get ftp --bogus
expect_unsent 2 'Give one of: get set test-smtp' kxcam "$ti"
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
    expect "$status" 'failed: ' kxcam "${!name}" get video
    ! grep -Eq '(ftpip|upnpinfo|scanupnp)=[^ ]' <(sed 's/paratest=//g' "$scratch/$name") || fail 'wrote to it'
done <<'END'
refuse 4 --fault refuse
garbage 1 --fault garbage
cut 1 --fault cut-short
broken 1 --fault status --fault-status 500
forbidden 3 --fault status --fault-status 403
END

# On a terminal, the password is asked for and does not show.
ask_on_a_terminal() {
    command='kxcam on a terminal'
    mkfifo "$scratch/keys"
    env -u KXCAM_PASSWORD script -qec "'$bin/kxcam' --host 127.0.0.1 --port $ti get smtp" /dev/null \
        <"$scratch/keys" >"$scratch/out" &
    local terminal=$!
    exec 8>"$scratch/keys"
    until grep -q 'Password of admin at' "$scratch/out" || ! kill -0 $terminal; do sleep 0.01; done
    echo "$KXCAM_PASSWORD" >&8
    wait $terminal || fail "exit code $?"
    grep -q 'mail server' "$scratch/out" || fail 'does not describe the settings'
    ! grep -q "$KXCAM_PASSWORD" "$scratch/out" || fail 'shows the password'
}
if script -qec true /dev/null >/dev/null 2>&1; then
    ask_on_a_terminal
else
    echo 'skipped: the password prompt, which is tested where the system has pseudo-terminals'
fi

[ $failures = 0 ]
