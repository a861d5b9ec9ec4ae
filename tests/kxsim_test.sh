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
# start OPTIONS...: its output is $scratch/out; the port of its first camera becomes $port
start() {
    options=$*
    local began=${EPOCHREALTIME/./}
    # An interactive shell is what makes a background program heed SIGINT.
    (set -m && exec "$kxsim" "$@" >"$scratch/out" 2>&1) &
    simulator=$!
    until grep -q listening "$scratch/out"; do
        kill -0 "$simulator" || exit 1
        sleep 0.01
    done
    [ $((${EPOCHREALTIME/./} - began)) -lt 1000000 ] || fail 'took a second to start'
    port=$(sed -n '1s/.*://p' "$scratch/out")
}
# stop SIGNAL STATUS
stop() {
    local status=0
    kill "-$1" "$simulator"
    wait "$simulator" || status=$?
    simulator=
    [ $status = "$2" ] || fail "exit code $status after SIG$1"
}
# says LINE...: the output in whole, extended regular expressions
says() {
    local line number=0
    [ $# = "$(wc -l <"$scratch/out")" ] || fail "does not say $# lines"
    for line; do
        number=$((number + 1))
        sed -n "${number}p" "$scratch/out" | grep -Eqx -e "$line" || fail "line $number is not '$line'"
    done
}
# ask HOST REQUEST-LINE [CREDENTIALS]: prints the reply
ask() {
    exec 9<>"/dev/tcp/$1/$port"
    printf '%s\r\nAuthorization: Basic %s\r\n\r\n' "$2" "$(printf %s "${3:-admin:admin}" | base64)" >&9
    tr -d '\r' <&9
    exec 9>&-
}
# refuses STATUS PATTERN OPTIONS...: it does not start, and says why
refuses() {
    local status=0
    options="${*:3}"
    timeout 5 "$kxsim" "${@:3}" >"$scratch/out" 2>"$scratch/err" || status=$?
    [ $status = "$1" ] || fail "exit code $status"
    grep -Eq -e "$2" "$scratch/err" || fail "does not say '$2' on standard error"
    ! grep -q listening "$scratch/out" || fail 'claims to listen'
}

start --port 0 --model KX-C300B --user me --password mine
ask 127.0.0.1 'GET /vb.htm?paratest=productmodel HTTP/1.1' me:mine | grep -qx 'OK productmodel=KX-C300B' || fail 'is another model'
ask 127.0.0.1 'GET /vb.htm?ftpip=1 HTTP/1.1' | grep -q '^HTTP/1.1 401 ' || fail 'takes any password'
ask 127.0.0.1 'GET /other?a=b HTTP/1.1' me:mine >/dev/null
says "KX-C300B listening on http://127\.0\.0\.1:$port" \
    "127\.0\.0\.1:$port 200 GET /vb\.htm\?paratest=productmodel" \
    "127\.0\.0\.1:$port 401 GET /vb\.htm\?ftpip=1" \
    "127\.0\.0\.1:$port 404 GET /other\?a=b"
mv "$scratch/out" "$scratch/first"
refuses 1 "^kxsim: cannot listen on 127\.0\.0\.1:$port: Address already in use$" --port "$port"
refuses 1 "^kxsim: cannot listen on 127\.0\.0\.1:$port: Address already in use$" --address 127.0.0.0 --count 3 --port "$port"
mv "$scratch/first" "$scratch/out"
stop INT 0

start --port "$port" --count 3 --address 127.0.0.254 # the port of the one that has just ended
says "KX-C200T listening on http://127\.0\.0\.254:$port" \
    "KX-C200T listening on http://127\.0\.0\.255:$port" "KX-C200T listening on http://127\.0\.1\.0:$port"
stop TERM 0
