#!/usr/bin/env bash
# Nothing that must be told twice is told once: check_complete.sh SOURCE_DIR
set -euo pipefail
cd "$1"

failed=0
missing() {
    echo "$1"
    failed=1
}
# Every call for a camera stands in the table that is run against faults, but for these, which ask no camera.
for call in $(grep -i '^Kx_Ipc_' tests/exported_symbols.txt | grep -vE 'Kx_Ipc_(Login|Logout|SearchWifiList)$'); do
    grep -q "\b$call\b" tests/CameraCalls.h || missing "tests/CameraCalls.h lacks $call"
done
for record in $(sed -n 's/^typedef struct \([A-Za-z]*\)$/\1/p' include/KxIpcSDK/*.h); do
    grep -q "^RECORD($record," src/KxIpcSDK/RecordLayout.cpp || missing "RecordLayout.cpp lacks $record"
done
for header in include/KxIpcSDK/Kx*.h; do
    grep -q "<KxIpcSDK/$(basename "$header")>" include/KxIpcSDK/*.h || [ "$(basename "$header")" = KxIpcSDK.h ] ||
        missing "$header is included by no other header"
done
for area in $(sed -n 's/^extern constinit const Area \([A-Za-z]*\) =.*/\1/p' apps/kxcam/areas/*.cpp); do
    grep -q "&$area\b" apps/kxcam/areas/Areas.cpp || missing "kxcam does not list $area"
done
exit $failed
