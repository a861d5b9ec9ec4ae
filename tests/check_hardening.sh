#!/usr/bin/env bash
# The libraries are hardened: full RELRO, stack protector, fortified libc calls. check_hardening.sh LIBRARY
set -euo pipefail

needs() {
    grep -Eq "$1" <<<"$2" || { echo "not found: $1"; exit 1; }
}

segments=$(readelf -lW "$1")
dynamic=$(readelf -dW "$1")
symbols=$(nm -D "$1")
needs GNU_RELRO "$segments"
needs BIND_NOW "$dynamic"
needs __stack_chk_fail "$symbols"
needs '__[a-z]*printf_chk' "$symbols"
