#!/usr/bin/env bash
# kxcam discover as its users meet it. Multicast: to be run in a private network only.
# kxcam_discover_test.sh BIN_DIR PRIVATE_NETWORK
set -uo pipefail
export LC_ALL=C.UTF-8
bin=$1
private_network=$2
scratch=$(mktemp -d)
mkdir "$scratch/work" "$scratch/temporary"
export TMPDIR=$scratch/temporary
simulators=()
searches=()
trap '[ ${#simulators[@]} = 0 ] || kill "${simulators[@]}"; rm -rf "$scratch"' EXIT
failures=0

fail() {
    failures=$((failures + 1))
    printf 'FAILED: %s\n' "$1"
    sed 's/^/  | /' "$scratch/$2"*
}
# simulate ADDRESS NAME OPTIONS...
simulate() {
    local log=$scratch/camera${#simulators[@]}
    : >"$log"
    "$bin/kxsim" --port 8080 --discovery "$interface" --address "$1" --name "$2" "${@:3}" >"$log" &
    simulators+=($!)
    until grep -q listening "$log"; do
        kill -0 $! || exit 1
        sleep 0.01
    done
}
# discover OUT ARGUMENT...: in the background; the exit code goes to OUT.status
discover() {
    (
        cd "$scratch/work" || exit
        $run "$bin/kxcam" discover "${@:2}" >"$scratch/$1.out" 2>"$scratch/$1.err" </dev/null
        echo $? >"$scratch/$1.status"
    ) &
    searches+=($!)
}
# says OUT STATUS TEXT: what it printed, rows in any order after the first line
says() {
    local printed
    printed=$(head -n 1 "$scratch/$1.out"; tail -n +2 "$scratch/$1.out" | sort)
    [ "$(cat "$scratch/$1.status")" = "$2" ] || fail "exit code is not $2" "$1"
    [ "$printed" = "$3" ] || fail 'lists other cameras' "$1"
}

interface=127.0.0.1
run=
simulate 127.0.0.1 'Front Door' --count 2
simulate 127.0.0.3 $'100 %41 \e[1m \xc3\xbc' --model KX-C300B
simulate 127.0.0.4 "$(printf 'n%.0s' {1..300})" --model KX-C400A
simulate 127.0.0.5 Neighbour --model XK-C200T
seconds=$SECONDS
discover table
discover json --json
run=$private_network # without a camera
discover alone
discover nobody --json
run=
wait "${searches[@]}"
[ $((SECONDS - seconds)) -le 9 ] || fail "took $((SECONDS - seconds)) seconds" table

says table 0 "ADDRESS           PORT  MODEL         NAME
127.0.0.1         8080  KX-C200T      Front Door 1
127.0.0.2         8080  KX-C200T      Front Door 2
127.0.0.3         8080  KX-C300B      100 %41 \\x1b[1m ü
127.0.0.4         8080  KX-C400A      $(printf 'n%.0s' {1..127})"
[ ! -s "$scratch/table.err" ] || fail 'says something beside the table' table
[ "$(grep -c '"address": "127.0.0' "$scratch/json.out")" = 4 ] || fail 'other JSON' json
grep -q '"name": "100 %41 \\u001b\[1m ü"' "$scratch/json.out" || fail 'other names' json
says alone 4 ''
grep -q 'kxcam: no camera answered.*firewall.*subnet.*route' "$scratch/alone.err" || fail 'does not say why' alone
says nobody 4 $'{\n  "cameras": []\n}'

# What the cameras' log says of it: two searches of two questions each, and a datagram that is none.
printf nonsense >/dev/udp/239.255.255.250/3702
for ((i = 0; i < 500; ++i)); do
    ! grep -q '^127\.0\.0\.2:8080 Probe from 127\.0\.0\.1:[0-9]* ignored$' "$scratch/camera0" || break
    sleep 0.01
done
[ $i -lt 500 ] || fail 'does not log what is ignored' camera0
[ "$(grep -c '^127\.0\.0\.2:8080 Probe from 127\.0\.0\.1:[0-9]* answered$' "$scratch/camera0")" = 4 ] ||
    fail 'does not log four answers' camera0

# Without a route the question can not be sent.
ip route del 239.0.0.0/8
discover unsent
wait $!
says unsent 4 ''
grep -q 'could not be sent.*route' "$scratch/unsent.err" || fail 'does not say why' unsent

[ -z "$(find "$scratch/work" "$scratch/temporary" -mindepth 1)" ] || fail 'leaves files behind' work

# A daemon of another kind beside the cameras, which comes, answers its own kind and goes. Its package is not among
# those that are installed for the tests, as it would start to answer the local network.
if command -v wsdd >/dev/null; then
    interface=10.99.0.1
    ip link add lan type veth peer name far
    ip link set far up multicast on
    ip address add "$interface/24" dev lan
    ip link set lan up multicast on
    ip route add 239.0.0.0/8 dev lan src "$interface"
    simulate "$interface" 'Front Door'
    discover peers
    search=$!
    wsdd -4 -v -v -i lan >"$scratch/peers.host" 2>&1 &
    daemon=$!
    until grep -q 'joined multicast group' "$scratch/peers.host" || [ -e "$scratch/peers.status" ]; do sleep 0.1; done
    sleep 1
    kill "$daemon"
    wait "$search"
    says peers 0 $'ADDRESS           PORT  MODEL         NAME\n10.99.0.1         8080  KX-C200T      Front Door'
    grep -q 'joined multicast group' "$scratch/peers.host" || fail 'the daemon was not there' peers
else
    echo 'not tried beside a host daemon: runs where wsdd is installed'
fi
[ $failures = 0 ]
