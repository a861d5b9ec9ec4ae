#!/usr/bin/env bash
# Runs a command in a network of its own, where nothing but loopback exists and multicast stays on it:
# scripts/private_network.sh COMMAND [ARGUMENT...]
# The command takes this script's place: its exit code, streams and signals are its own. Exit code 77: no such network
# is to be had here.
set -euo pipefail
unavailable=77

if [ $# -eq 0 ]; then
    echo "usage: $0 COMMAND [ARGUMENT...]" >&2
    exit 2
fi

# shellcheck disable=SC2016 # "$@" is for the inner shell
inside='ip link set lo up multicast on && ip route add 239.0.0.0/8 dev lo src 127.0.0.1 && exec "$@"'

# Root needs no user namespace, others do. A trial first: past the exec nobody could tell a refusal from a failure of
# the command.
for namespaces in --net '--map-root-user --net'; do
    # shellcheck disable=SC2086 # the options are meant to be split
    if reason=$(unshare $namespaces sh -c "$inside" sh true 2>&1 </dev/null); then
        exec unshare $namespaces sh -c "$inside" sh "$@"
    fi
done
echo "no private network: $reason" >&2
exit $unavailable
