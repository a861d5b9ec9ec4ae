#!/usr/bin/env bash
# Each public header compiles alone, as C and as C++, and a record's array fits the call that takes it:
# check_headers.sh CC CXX INCLUDE_DIR
set -euo pipefail

for header in "$3"/KxIpcSDK/*.h; do
    name="KxIpcSDK/$(basename "$header")"
    for compiler in "$1 -std=c99 -x c" "$2 -std=c++20 -x c++"; do
        printf "#include <%s>\nextern int something;\n" "$name" |
            $compiler -Wall -Wextra -pedantic -Werror -fsyntax-only -I"$3" - ||
            { echo "$name does not compile alone with $compiler"; exit 1; }
    done
done

printf '#include <KxIpcSDK/KxMedia.h>\nint draw(MotionSettingsInfo* m) { return Kx_IpcClient_DrawGrid(1, 0, m->map); }\n' |
    $1 -std=c99 -x c -Wall -Wextra -pedantic -Werror -fsyntax-only -I"$3" - ||
    { echo "a C application can not call Kx_IpcClient_DrawGrid"; exit 1; }
