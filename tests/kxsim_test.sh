#!/usr/bin/env bash
# kxsim as its users meet it: addresses, log, faults, and how it starts and ends. kxsim_test.sh BIN_DIR
set -uo pipefail
kxsim=$1/kxsim
scratch=$(mktemp -d)
simulator=
trap '[ -z "$simulator" ] || kill "$simulator"; rm -rf "$scratch"' EXIT
failures=0

fail() {
    failures=$((failures + 1))
    printf 'FAILED: kxsim %s: %s\n' "$options" "$1"
    sed 's/^/  | /' "$scratch/out"
}
# start OPTIONS...: its output is $scratch/out, the port of its first camera $port
start() { start_live --no-streams "$@"; }
# The same, with live pictures on $rtsp
start_live() {
    local began=${EPOCHREALTIME/[.,]/}
    options=$*
    : >"$scratch/out" # before the program is there to do so
    "$kxsim" "$@" >"$scratch/out" 2>&1 &
    simulator=$!
    until grep -q listening "$scratch/out"; do
        kill -0 "$simulator" || exit 1
        sleep 0.01
    done
    [ $((${EPOCHREALTIME/[.,]/} - began)) -lt 1000000 ] || fail 'took a second to start'
    port=$(sed -n '1s/.*://p' "$scratch/out")
    rtsp=$(sed -n '2s/.* live on //p' "$scratch/out")
}
# stop SIGNAL: it ends, and calls that a success
stop() {
    local status=0
    kill "-$1" "$simulator"
    wait "$simulator" || status=$?
    simulator=
    [ $status = 0 ] || fail "exit code $status after SIG$1"
}
# says LINE...: the whole output
says() {
    [ "$(printf '%s\n' "$@")" = "$(cat "$scratch/out")" ] || fail "does not say: $*"
}
# ask HOST REQUEST-LINE [CREDENTIALS]: prints the reply
ask() {
    exec 9<>"/dev/tcp/$1/$port"
    printf '%s\r\nAuthorization: Basic %s\r\n\r\n' "$2" "$(printf %s "${3:-admin:admin}" | base64)" >&9
    tr -d '\r' <&9
    exec 9>&-
}
# refuses STATUS PATTERN OPTIONS...: it does not stay, and says why
refuses() {
    local status=0
    options="${*:3}"
    timeout 5 "$kxsim" "${@:3}" 2>"$scratch/err" >"$scratch/refused" || status=$?
    [ $status = "$1" ] || fail "exit code $status"
    grep -Eq -e "$2" "$scratch/err" || fail "says '$(cat "$scratch/err")'"
}

start --port 0 --model KX-C300B --user me --password mine
refuses 1 "^kxsim: cannot listen on 127\.0\.0\.1:$port: Address already in use$" --port "$port"
refuses 1 "^kxsim: cannot listen on 127\.0\.0\.1:$port: " --address 127.0.0.0 --count 3 --port "$port"
model=$(ask 127.0.0.1 'GET /vb.htm?paratest=productmodel HTTP/1.1' me:mine)
[[ $model == *$'\n\nOK productmodel=KX-C300B' ]] || fail 'does not tell its model'
ask 127.0.0.1 'GET /vb.htm?ftpip=1 HTTP/1.1' >"$scratch/reply"
ask 127.0.0.1 'GET /vb.htm?user=me&pwd=s%20t&wepKey1=s&adduser=bob:s:2:1&newsetuser=s&ftpip=?&Pwd=s?s HTTP/1.1' \
    >"$scratch/reply"
ask 127.0.0.1 'nonsense' me:mine >"$scratch/reply"
says "KX-C300B listening on http://127.0.0.1:$port" \
    "127.0.0.1:$port 200 GET /vb.htm?paratest=productmodel" \
    "127.0.0.1:$port 401 GET /vb.htm?ftpip=1" \
    "127.0.0.1:$port 401 GET /vb.htm?user=me&pwd=***&wepKey1=***&adduser=bob:***&newsetuser=s&ftpip=?&Pwd=***" \
    "127.0.0.1:$port 400 nonsense"
stop INT

start --port "$port" --fault status --fault-status 503 # the port that has just been in use
[[ $(ask 127.0.0.1 'GET / HTTP/1.1') == 'HTTP/1.1 503 Service Unavailable'* ]] || fail 'does not misbehave'
says "KX-C200T listening on http://127.0.0.1:$port" "127.0.0.1:$port 503 GET /"
stop TERM

start --port 0 --fault empty
[ -z "$(ask 127.0.0.1 'GET / HTTP/1.1')" ] || fail 'does not misbehave'
says "KX-C200T listening on http://127.0.0.1:$port" "127.0.0.1:$port --- GET /"
stop INT

start --port "$port" --count 3 --address 127.0.0.254
until [ "$(grep -c listening "$scratch/out")" = 3 ] || ! kill -0 "$simulator"; do sleep 0.01; done
for host in 127.0.0.254 127.0.0.255 127.0.1.0; do
    [[ $(ask $host 'GET /vb.htm?paratest=netip HTTP/1.1') == *"OK netip=$host" ]] || fail "is not at $host"
done
says "KX-C200T listening on http://127.0.0.254:$port" "KX-C200T listening on http://127.0.0.255:$port" \
    "KX-C200T listening on http://127.0.1.0:$port" "127.0.0.254:$port 200 GET /vb.htm?paratest=netip" \
    "127.0.0.255:$port 200 GET /vb.htm?paratest=netip" "127.0.1.0:$port 200 GET /vb.htm?paratest=netip"
stop INT

start_live --port 0 --password pictures --stream-fault stop-sending
place=${rtsp#rtsp://127.0.0.1:}
[[ $(ask 127.0.0.1 'GET /vb.htm?paratest=mainrtspport HTTP/1.1' admin:pictures) == *"OK mainrtspport=${place%/main}" ]] ||
    fail 'is live on another port than it tells'
exec 9<>"/dev/tcp/127.0.0.1/${place%/main}"
printf 'DESCRIBE %s RTSP/1.0\r\nCSeq: 1\r\n\r\n' "$rtsp" >&9
read -r reply <&9
[[ $reply == 'RTSP/1.0 401 Unauthorized'* ]] || fail "answers '$reply'"
exec 9>&-
says "KX-C200T listening on http://127.0.0.1:$port" "KX-C200T live on $rtsp" \
    "127.0.0.1:$port 200 GET /vb.htm?paratest=mainrtspport" "127.0.0.1:$port 401 DESCRIBE /main"
refuses 1 "^kxsim: cannot stream on 127\.0\.0\.1:${place%/main}: Address already in use$" --port 0 --rtsp-port "${place%/main}"
stop INT

: >"$scratch/out"
refuses 1 '^kxsim: cannot listen on 300\.1\.1\.1:80' --address 300.1.1.1 --port 80
refuses 1 '^kxsim: cannot answer searches on 192\.0\.2\.1: ' --port 0 --discovery 192.0.2.1
refuses 2 'not expected: --bogus' --bogus
refuses 2 'not expected: extra' --port 0 extra
refuses 2 'nope not in .*cut-short.*unreachable' --fault nope
refuses 2 '99 not in range 100 to 599' --fault status --fault-status 99
refuses 2 'nope not in .*disconnect' --stream-fault nope
refuses 2 'excludes' --no-streams --rtsp-port 1
refuses 2 '501 not in range 1 to 500' --count 501
refuses 2 '--port = 65536' --port 65536
"$kxsim" --help | grep -q '^Examples:' || fail 'has no help'

[ $failures = 0 ]
