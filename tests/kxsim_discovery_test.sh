#!/usr/bin/env bash
# kxsim as whoever searches for cameras meets it. Multicast: to be run in a private network only.
# kxsim_discovery_test.sh BIN_DIR
set -uo pipefail
kxsim=$1/kxsim
scratch=$(mktemp -d)
simulators=()
trap '[ ${#simulators[@]} = 0 ] || kill "${simulators[@]}"; rm -rf "$scratch"' EXIT
failures=0

fail() {
    failures=$((failures + 1))
    printf 'FAILED: %s\n' "$1"
    sed 's/^/  | /' "$scratch"/out*
}
# start CAMERAS OPTIONS...: their output is $scratch/outN, with N counting from 0
start() {
    local out=$scratch/out${#simulators[@]}
    : >"$out" # before the program is there to do so
    "$kxsim" --port 8080 --count "$1" "${@:2}" >"$out" &
    simulators+=($!)
    wait_for "$1" listening "$out"
}
# wait_for COUNT TEXT FILE
wait_for() {
    for ((i = 0; i < 500; ++i)); do
        [ "$(grep -c "$2" "$3")" -lt "$1" ] || return
        sleep 0.01
    done
    fail "does not say '$2' $1 times"
}
# search DATAGRAM
search() { printf %s "$1" >/dev/udp/239.255.255.250/3702; }
# says N LINE...: what it printed after it had started, without the sender's port and in any order
says() {
    local printed
    printed=$(grep -v listening "$scratch/out$1" | sed 's/\(from [0-9.]*\):[0-9]*/\1/' | sort)
    [ "$printed" = "$(printf '%s\n' "${@:2}" | sort)" ] || fail "camera $1 does not say: ${*:2}"
}

probe='<s:Envelope xmlns:s="http://www.w3.org/2003/05/soap-envelope"
 xmlns:a="http://schemas.xmlsoap.org/ws/2004/08/addressing" xmlns:d="http://schemas.xmlsoap.org/ws/2005/04/discovery">
 <s:Header><a:MessageID>urn:1</a:MessageID></s:Header><s:Body><d:Probe>SCOPES</d:Probe></s:Body></s:Envelope>'
probe=${probe//$'\n'/} # the shell sends a datagram a line

start 2 --discovery 127.0.0.1 --name 'Front Door'
start 1 --discovery 127.0.0.1 --address 127.0.1.1 --name Garage
start 1 --address 127.0.2.1
search "${probe/SCOPES/}"
search "${probe/SCOPES/<d:Scopes>onvif:\/\/www.onvif.org\/name\/Front%20Door%202<\/d:Scopes>}"
wait_for 4 Probe "$scratch/out0"
wait_for 2 Probe "$scratch/out1"
says 0 '127.0.0.1:8080 Probe from 127.0.0.1 answered' '127.0.0.1:8080 Probe from 127.0.0.1 ignored' \
    '127.0.0.2:8080 Probe from 127.0.0.1 answered' '127.0.0.2:8080 Probe from 127.0.0.1 answered'
says 1 '127.0.1.1:8080 Probe from 127.0.0.1 answered' '127.0.1.1:8080 Probe from 127.0.0.1 ignored'
says 2

reason=$("$kxsim" --port 0 --discovery 192.0.2.1 2>&1 >/dev/null) && fail 'joins on a foreign address'
[[ $reason == 'kxsim: cannot answer searches on 192.0.2.1: '* ]] || fail "says '$reason'"

[ $failures = 0 ]
