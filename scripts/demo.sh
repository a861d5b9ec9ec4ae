#!/usr/bin/env bash
# Shows the main job against simulated cameras: scripts/demo.sh [--built BIN_DIR]
# With --built, nothing is installed or built: the programs are taken from there.
set -euo pipefail
cd "$(dirname "$0")/.."

bin=build/release/bin
case "${1:-}" in
    --built | --in-private-network) bin=$2 ;;
    *)
        scripts/setup.sh
        echo "Building, a minute or so ..."
        scripts/build.sh release kxcam kxsim >/dev/null
        ;;
esac
# A search multicasts, so it is shown where nobody else hears it.
if [ "${1:-}" != --in-private-network ] && scripts/private_network.sh true 2>/dev/null; then
    exec scripts/private_network.sh scripts/demo.sh --in-private-network "$bin"
fi

bin=$(realpath "$bin")
scratch=$(mktemp -d)
simulators=()
trap '[ ${#simulators[@]} = 0 ] || kill "${simulators[@]}"; rm -rf "$scratch"' EXIT

title() {
    if [ -t 1 ]; then printf '\n\033[1m%s\033[0m\n' "$*"; else printf '\n%s\n' "$*"; fi
}
# Shows a command as one would type it, then runs it.
run() {
    echo "\$ kxcam $camera $*"
    # shellcheck disable=SC2086 # the options are meant to be split
    "$bin/kxcam" $camera "$@"
}
# simulate OPTION...: shows the command and starts a camera; the first one's log is what is shown in the end.
simulate() {
    local log=$scratch/camera${#simulators[@]}.log
    echo "\$ kxsim$(printf ' %q' "$@")"
    "$bin/kxsim" "$@" >"$log" &
    simulators+=($!)
    until grep -q listening "$log"; do
        kill -0 $!
        sleep 0.05
    done
    head -n 1 "$log"
}

if [ "${1:-}" = --in-private-network ]; then
    title "Three simulated cameras, with user admin and password admin, in a network of their own"
    simulate --port 8080 --discovery 127.0.0.1 --name "Front Door"
    simulate --address 127.0.0.2 --port 8080 --model KX-C300B --discovery 127.0.0.1 --name Garage
    simulate --address 127.0.0.3 --port 8080 --model KX-C400A --discovery 127.0.0.1 --name Yard

    title "Find them"
    echo "\$ kxcam discover"
    "$bin/kxcam" discover
else
    title "A simulated camera, with user admin and password admin"
    echo "(No search is shown: this machine allows no private network to multicast in. As root it would.)"
    simulate --port 0
fi
port=$(sed -n '1s/.*:\([0-9]*\)$/\1/p' "$scratch/camera0.log")
camera="--host 127.0.0.1 --port $port --user admin"
export KXCAM_PASSWORD=admin

title "Read the network settings of the first"
run get network

title "Point its FTP upload to another server"
run set ftp ftpip=ftp.example.org ftpipport=2121 ftppath=/front-door

title "Read the change back, for a program this time"
run get ftp --json

title "Look through it: a picture, and five seconds of recording"
cd "$scratch"
run snapshot front-door.jpg
run record front-door.avi --seconds 5

title "Try a wrong password"
echo "\$ export KXCAM_PASSWORD=guess"
if KXCAM_PASSWORD=guess run get network; then
    echo "The camera let a wrong password in." >&2
    exit 1
fi

title "What the camera saw"
sed -e '/ on [a-z]*:/d' -e 's/^/  /' "$scratch/camera0.log"
