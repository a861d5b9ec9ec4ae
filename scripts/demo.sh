#!/usr/bin/env bash
# Shows the main job against a simulated camera: scripts/demo.sh [--built BIN_DIR]
# With --built, nothing is installed or built: the programs are taken from there.
set -euo pipefail
cd "$(dirname "$0")/.."

bin=build/release/bin
if [ "${1:-}" = --built ]; then
    bin=$2
else
    scripts/setup.sh
    echo "Building, a minute or so ..."
    scripts/build.sh release kxcam kxsim >/dev/null
fi

scratch=$(mktemp -d)
simulator=
trap '[ -z "$simulator" ] || kill "$simulator"; rm -rf "$scratch"' EXIT

title() {
    if [ -t 1 ]; then printf '\n\033[1m%s\033[0m\n' "$*"; else printf '\n%s\n' "$*"; fi
}
# Shows a command as one would type it, then runs it.
run() {
    echo "\$ kxcam $camera $*"
    # shellcheck disable=SC2086 # the options are meant to be split
    "$bin/kxcam" $camera "$@"
}

title "A simulated camera, with user admin and password admin"
echo "\$ kxsim --port 0"
"$bin/kxsim" --port 0 >"$scratch/camera.log" &
simulator=$!
until grep -q listening "$scratch/camera.log"; do
    kill -0 "$simulator"
    sleep 0.05
done
head -n 1 "$scratch/camera.log"
port=$(sed -n '1s/.*:\([0-9]*\)$/\1/p' "$scratch/camera.log")
camera="--host 127.0.0.1 --port $port --user admin"
export KXCAM_PASSWORD=admin

title "Read its network settings"
run get network

title "Point its FTP upload to another server"
run set ftp ftpip=ftp.example.org ftpipport=2121 ftppath=/front-door

title "Read the change back, for a program this time"
run get ftp --json

title "Try a wrong password"
echo "\$ export KXCAM_PASSWORD=guess"
if KXCAM_PASSWORD=guess run get network; then
    echo "The camera let a wrong password in." >&2
    exit 1
fi

title "What the camera saw"
sed -e 1d -e 's/^/  /' -e 's/pwd=[^&]*/pwd=***/' "$scratch/camera.log"
