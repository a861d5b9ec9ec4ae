# What the tests of kxcam have in common. Sourced by them, with BIN_DIR as the first argument.
# shellcheck shell=bash
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
    local value='("([^"\\[:cntrl:]]|\\["\\bfnrt]|\\u[0-9a-f]{4})*"|-?[0-9]+(\.[0-9]+)?|true|false|null)' key='"[a-z0-9_]+": '
    local flat="\{( +$key$value,)* +$key$value *\}"
    [[ $(tr -d '\n' <"$scratch/out") =~ ^($flat|\{("  "$key($flat|null),)*"  "$key($flat|null)\})$ ]]
}
# piped LINE PORT ARGUMENTS...: kxcam with a line to read
piped() { printf '%s\n' "$1" | kxcam "${@:2}"; }
# at_terminal STATUS COMMAND SAYS [PROMPT ANSWER]...: a command on a terminal, and what it says in the end
at_terminal() {
    local status=0 expected=$1 says=$3 terminal
    command="$2 (on a terminal)"
    [ -p "$scratch/keys" ] || mkfifo "$scratch/keys"
    : >"$scratch/out" # before an older prompt in it can be taken for this one's
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
