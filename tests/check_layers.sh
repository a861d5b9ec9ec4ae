#!/usr/bin/env bash
# Includes point down only: exported functions -> transport, search, streaming -> ground floor. check_layers.sh SOURCE_DIR
set -euo pipefail
cd "$1"

failed=0
# may FOLDER REGEX: what the files of a folder may include of ours
may() {
    local wrong
    wrong=$(grep -rnE '#include ["<](Core|Log|ZrThread|inirw|ipcctl|NetManager|KxSearch|KxIpcSDK|KxSim)/' "$1" |
        grep -vE "#include [\"<]($2)" || true)
    [ -z "$wrong" ] || { echo "$1 must not include:"; echo "$wrong"; failed=1; }
}
may src/Core 'Core/|KxIpcSDK/(KxMedia|KxSdk|KxSearch)\.h'
may src/Log 'Log/|KxIpcSDK/KxSdkLog\.h'
may src/ZrThread 'ZrThread/'
may src/inirw 'inirw/|Core/PrintText\.h'
may src/ipcctl 'ipcctl/'
may src/NetManager 'NetManager/|Core/|Log/|ZrThread/|inirw/'
may src/KxSearch 'KxSearch/|Core/|KxIpcSDK/KxSearch\.h'
may src/KxIpcSDK 'KxIpcSDK/|Core/|Log/|ZrThread/|inirw/|NetManager/|KxSearch/|ipcctl/'
may sim 'KxSim/'
may apps/kxcam 'KxIpcSDK/Kx[A-Za-z]*\.h'
may apps/kxsim 'KxSim/'

# Every other file of kxcam would take several times as long to compile.
parsers=$(grep -rl '#include <CLI/' apps/kxcam | grep -vE '/verbs/(CommandLine|Verb)\.cpp$' || true)
[ -z "$parsers" ] || { echo "the command line's parser is for Verb.cpp and CommandLine.cpp only:"; echo "$parsers"; failed=1; }
exit $failed
