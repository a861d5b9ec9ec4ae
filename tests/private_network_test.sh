#!/usr/bin/env bash
# What runs in a private network behaves as it would outside. private_network_test.sh SCRIPT
set -uo pipefail
private=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0

# expect WHAT WANTED GOT
expect() {
    [ "$2" = "$3" ] && return
    failures=$((failures + 1))
    printf 'FAILED: %s is "%s" instead of "%s"\n' "$1" "$3" "$2"
}

expect 'the exit code' 3 "$("$private" sh -c 'exit 3'; echo $?)"
expect 'the exit code without a command' 2 "$("$private" 2>"$scratch/usage"; echo $?)"
expect 'the exit code without namespaces' 77 "$(PATH=$scratch /bin/bash "$private" true 2>"$scratch/reason"; echo $?)"
expect 'the reason' 1 "$(grep -c '^no private network: .*unshare' "$scratch/reason")"
expect 'the list of arguments' '[a  b][][$x][-c]' "$("$private" printf '[%s]' 'a  b' '' '$x' -c)"
expect 'standard output' in "$(echo in | "$private" cat 2>"$scratch/error")"
expect 'standard error' out "$("$private" sh -c 'echo out >&2' 2>&1 >"$scratch/output")"
expect 'the list of networks' 'lo UNKNOWN' "$("$private" ip -brief link | awk '{ print $1, $2 }')"
expect 'the way of multicast' 1 "$("$private" ip route get 239.255.255.250 | grep -c 'dev lo src 127\.0\.0\.1')"

"$private" sh -c 'trap "exit 9" TERM; echo ready; while :; do sleep 0.01; done' >"$scratch/output" &
until grep -q ready "$scratch/output"; do sleep 0.01; done
kill -TERM $!
wait $!
expect 'the exit code after a signal' 9 $?

[ $failures = 0 ]
