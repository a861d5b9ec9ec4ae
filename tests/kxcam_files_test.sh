#!/usr/bin/env bash
# The memory card, recordings and files, as the users of kxcam meet them. kxcam_files_test.sh BIN_DIR
set -uo pipefail
# shellcheck source=tests/kxcam_helpers.sh
. "$(dirname "$0")/kxcam_helpers.sh"

ti='' page='' brief='' lasting='' damaged='' cut='' silent='' # ports
simulate ti
simulate page --model KX-C300B
here=$scratch/files
mkdir "$here"
head -c 3000000 /dev/urandom >"$here/clip.bin"
same() { cmp -s "$1" "$2" || fail "$1 and $2 differ"; }

# The memory card and what is on it.
expect 0 'sdinsert 1 sdtotalsize 31166976 sdfreesize 311669[0-9]+ $' kxcam "$ti" card status
expect 0 '"sdinsert": 1, "sdtotalsize": 31166976, ' kxcam "$ti" card status --json
is_json || fail 'is not JSON'
expect 0 '^page 0 20240501080000\.avi,.* page 2 .*20240501190000\.avi,[0-9]+ $' \
    kxcam "$ti" recordings search 20240501000000 20240501235959
expect 0 '"page": 0, "list": "2024050108.*"page": 1' \
    kxcam "$ti" recordings search 20240501080000 20240501130000 --json
expect 0 'no recordings between' kxcam "$ti" recordings search 20300101000000 20300102000000
expect 1 'write times otherwise' kxcam "$ti" recordings search yesterday today
expect 1 'the camera has no page 1' kxcam "$ti" recordings search 20240501080000 20240501080001 --first 1
expect_unsent 2 "the time 'a&b' contains '&'" kxcam "$ti" recordings search 'a&b' c
expect 1 'tells no position' kxcam "$ti" recordings position
expect 0 '^20240501081500,20240501080000\.avi $' kxcam "$ti" recordings info 20240501081500
expect 0 '"info": "http://.*20240501080000\.avi"' kxcam "$ti" recordings info 20240501081500 --http --json
expect 0 '^20240501081500 $' kxcam "$ti" recordings position
for action in pause resume 'speed 4' stop; do
    # shellcheck disable=SC2086 # an action may be two words
    expect 0 '^sent $' kxcam "$ti" recordings control $action
done
expect 1 'tells no position' kxcam "$ti" recordings position
expect 0 'sdinsert 1 sdtotalsize 0 ' kxcam "$ti" card unmount
expect 1 'It may have no card' kxcam "$ti" recordings search 20240501000000 20240501235959
expect 0 'sdinsert 1 sdtotalsize 31166976 ' kxcam "$ti" card mount
expect_unsent 2 'nothing was done: .* will lose all that is on it\. Add --yes' kxcam "$ti" card format
expect 0 'sdtotalsize 31166976 sdfreesize 31166976 $' kxcam "$ti" card format --yes
expect 0 '^msfsprerecordtime 5 -> 7 $' kxcam "$page" set recording msfsprerecordtime=7
expect 0 'recordstoragetype 1 .*msfsprerecordtime \(not told\) $' kxcam "$ti" get recording
expect 1 'did not tell all of recording' kxcam "$ti" set recording msfsprerecordtime=7

# Files there and back again, without the zero bytes that the library adds.
expect 0 '^sent .*/clip\.bin, 3\.0 MB $' kxcam "$ti" upload file "$here/clip.bin"
expect 0 '^saved .*/back, 3\.0 MB $' kxcam "$ti" download file clip.bin "$here/back"
same "$here/clip.bin" "$here/back"
for camera in "$ti" "$page"; do
    expect 0 '"saved": ".*/log", "bytes": [1-9]' kxcam "$camera" download log "$here/log" --json
    is_json || fail 'is not JSON'
    ! grep -q "$(printf '\001')" <(tr '\000' '\001' <"$here/log") || fail 'keeps zero bytes'
    tell "$camera" 'ftpip=before'
    expect 0 '^saved .*/config, ' kxcam "$camera" download config "$here/config"
    expect 0 '^saved .*/config\.ini, ' kxcam "$camera" download export "$here"
    same "$here/config" "$here/config.ini"
    tell "$camera" 'ftpip=after'
    expect 0 '"bytes": [1-9]' kxcam "$camera" upload config "$here/config" --json
    expect 0 'ftpip before ' kxcam "$camera" get ftp
    expect 0 '^sent .*/log, ' kxcam "$camera" upload oem "$here/log"
    expect 0 '^saved .*/oem, ' kxcam "$camera" download file /etc/oem.ini "$here/oem"
    same "$here/log" "$here/oem"
done
kxcam_here() { (cd "$here" && kxcam "$@"); }
expect 0 '^saved oem\.ini, ' kxcam_here "$ti" download file /etc/oem.ini
same "$here/log" "$here/oem.ini"
[ -z "$(find "$here" -name '*.part' -o -name 'kxcam.*')" ] || fail 'leaves something behind'

# Firmware and kernels, after which the camera restarts.
simulate brief --restart-time 700
printf 'firmware 9.8.7\n' >"$here/firmware"
printf 'kernel D-1.3\n' >"$here/KImage_D-1"
cp "$here/KImage_D-1" "$here/KImage_E-1"
expect 0 '^softversion 2\.0\.4 -> 9\.8\.7 .*15 bytes; waiting for the camera to restart' \
    kxcam "$brief" upload firmware "$here/firmware" --expect 9.8.7
tell "$brief" 'ftpip=here'
expect_unsent 2 'will lose all its settings\. Add --yes' kxcam "$ti" upload firmware "$here/firmware" --reset-settings
expect 5 'the camera runs 9\.8\.7, not 1\.0' \
    kxcam "$brief" upload firmware "$here/firmware" --reset-settings --yes --expect 1.0
expect 0 'ftpip \(empty\)' kxcam "$brief" get ftp
expect 0 '"before": "9\.8\.7", "after": "9\.8\.7"' kxcam "$brief" upload kernel "$here/KImage_D-1" --json
expect 1 'not for this camera' kxcam "$brief" upload kernel "$here/KImage_E-1"
expect 1 'not for this camera' kxcam "$brief" upload kernel "$here/firmware"
expect 1 'did not say that it took the file' kxcam "$page" upload kernel "$here/KImage_D-1"
simulate lasting --restart-time 3600000
expect 4 'is not back after 1 seconds' kxcam "$lasting" upload firmware "$here/firmware" --wait 1

# What goes wrong.
expect_unsent 2 "can not read a file '.*missing'" kxcam "$ti" upload file "$here/missing"
expect_unsent 2 "can not read a file" kxcam "$ti" upload file "$here"
expect_unsent 2 "the file's name 'a b' contains a blank" kxcam "$ti" download file 'a b'
expect 1 'does not hand it out' kxcam "$ti" download file nothing "$here/nothing"
expect 6 'can not write .*no/where\.part' kxcam "$ti" download log "$here/no/where"
expect 6 'can not write' kxcam "$ti" download export "$here/no"
small_disk() { (trap '' XFSZ && ulimit -f 2000 && kxcam "$ti" download file clip.bin "$here/full"); }
expect 6 'Is the disk full' small_disk
[ ! -e "$here/full" ] || fail 'leaves a partial file that looks whole'
cmp -s -n 2048000 "$here/clip.bin" "$here/full.part" || fail 'does not keep what has come'
simulate damaged --fault mismatch
expect 1 'It may be damaged' kxcam "$damaged" upload firmware "$here/firmware"
simulate cut --fault cut-short --fault-bytes 2000 --fault-for dw=
expect 0 '^sent ' kxcam "$cut" upload file "$here/clip.bin"
expect 4 'what has come is in .*/piece\.part' kxcam "$cut" download file clip.bin "$here/piece"
[ ! -e "$here/piece" ] || fail 'leaves a partial file that looks whole'

head -c 12000000 /dev/zero >"$here/long"
expect 0 '^sent .*, 12\.0 MB $' kxcam "$ti" upload file "$here/long"
expect 1 'takes 10 MB at most\. The beginning is in ' kxcam "$ti" download file long "$here/short"
[ ! -e "$here/short" ] || fail 'leaves a partial file that looks whole'

# Ctrl-C stops a transfer.
simulate silent --fault silent-after --fault-for update.cgi
command='kxcam upload firmware, interrupted'
env --default-signal=INT "$bin/kxcam" --host 127.0.0.1 --port "$silent" upload firmware "$here/firmware" \
    >"$scratch/out" 2>"$scratch/err" &
until grep -q update.cgi "$scratch/silent"; do sleep 0.01; done
kill -INT $!
wait $!
status=$?
[ $status = 130 ] || fail "exit code $status instead of 130"
grep -q '^kxcam: stopped' "$scratch/err" || fail 'does not say that it stopped'

# On a terminal, a bar tells how far it is.
if script -qec true /dev/null >/dev/null 2>&1; then
    cam="'$bin/kxcam' --host 127.0.0.1 --port $ti"
    at_terminal 0 "$cam upload file $here/clip.bin" '\[#\{40\}\] 3\.0 MB, waiting for the camera'
    [ "$(wc -l <"$scratch/out")" = 2 ] || fail 'lets the bar leave its line'
    at_terminal 0 "$cam card format" 'sdtotalsize' 'will lose all that is on it' yes
else
    echo 'skipped: prompts and the progress bar, which are tested where the system has pseudo-terminals'
fi

[ $failures = 0 ]
