#!/usr/bin/env bash
# Installs the packages of packages.txt that this Debian machine lacks.
set -euo pipefail
cd "$(dirname "$0")/.."

wanted=$(sed -e 's/#.*//' -e '/^[[:space:]]*$/d' packages.txt)
missing=()
for package in $wanted; do
    status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
    [ "$status" = "install ok installed" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
