#!/usr/bin/env bash
# A stranger installs the SDK and builds an application against it, by CMake and by pkg-config, and runs it.
# check_install.sh BUILD_DIR EXAMPLES_DIR
set -euo pipefail

scratch=$(mktemp -d)
simulator=
trap '[ -z "$simulator" ] || kill "$simulator"; rm -rf "$scratch"' EXIT
cmake --install "$1" --prefix "$scratch/prefix" >/dev/null
libdir=$(dirname "$(find "$scratch/prefix" -name libKxIpcSDK.so)")
grep -q 'SONAME.*libKxIpcSDK\.so\.1\]' <(readelf -dW "$libdir/libKxIpcSDK.so")

cmake -S "$2" -B "$scratch/cmake" -DCMAKE_PREFIX_PATH="$scratch/prefix" >/dev/null
cmake --build "$scratch/cmake" >/dev/null
export PKG_CONFIG_PATH="$libdir/pkgconfig"
# shellcheck disable=SC2046 # flags are meant to be split
cc -std=c99 -Wall -Wextra -pedantic -Werror "$2/ftp_target.c" $(pkg-config --cflags --libs KxIpcSDK) \
    -Wl,-rpath,"$libdir" -o "$scratch/by_pkg_config"

# The application that the README shows.
awk '/^```c$/ { code = 1; next } /^```$/ { code = 0 } code' "$(dirname "$0")/../README.md" >"$scratch/app.c"
# shellcheck disable=SC2046
cc -std=c99 -Wall -Wextra -pedantic -Werror "$scratch/app.c" $(pkg-config --cflags --libs KxIpcSDK) \
    -o "$scratch/app"

"$scratch/prefix/bin/kxsim" --port 0 >"$scratch/log" &
simulator=$!
until grep -q 'listening' "$scratch/log"; do sleep 0.05; done
port=$(sed -n 's/.*listening on .*:\([0-9]*\)$/\1/p' "$scratch/log")
for application in "$scratch/cmake/ftp_target" "$scratch/by_pkg_config"; do
    [ "$(KXCAM_PASSWORD=admin "$application" 127.0.0.1 "$port" admin | grep '^FTP')" = 'FTP target: ftp.example.org:2121' ]
done
(cd "$scratch" && KXCAM_PASSWORD=admin cmake/live_view 127.0.0.1 "$port" admin 1 | grep -E '^Saw [1-9][0-9]* pictures of [0-9]+x[0-9]+; the latest is .+\.jpg$')
"$scratch/prefix/bin/kxcam" --version
