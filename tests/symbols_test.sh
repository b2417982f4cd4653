#!/usr/bin/env bash
# What the libraries show to others: exactly the public names, each operation a stub of two instructions, and the core
# services left for a program to replace.
#   usage: symbols_test.sh SOURCE_DIR LIBRARY...
set -euo pipefail
export LC_ALL=C

source=$1
shift
failures=0
# Differences of two lists are a failure.
same() {
  local what=$1
  if ! diff <(printf '%s\n' "$2") <(printf '%s\n' "$3"); then
    printf 'symbols: %s\n' "$what" >&2
    failures=$((failures + 1))
  fi
}

exports=$(sed -n 's/^ZIM_EXPORT(\(.*\))$/\1/p' "$source/frame/exports.def")
declared=$(grep -oE '^ZimResult zimi[A-Za-z0-9_]+' "$source/include/zimcc.h" | cut -d' ' -f2)
same 'exports.def is not in ascending order, or has a name twice' "$exports" "$(sort -u <<<"$exports")"
same 'exports.def and zimcc.h differ' "$exports" "$(sort <<<"$declared")"

for library; do
  same "$library exports other names" "$(printf 'zimccGetLibVersion\n%s' "$exports" | sort)" \
    "$(nm -D --defined-only "$library" | awk '{print $3}' | sort)"
  same "$library does not import the core services" $'ownGetNumThreads\nzimFree\nzimMalloc' \
    "$(nm -D --undefined-only "$library" | grep -oE '\b(zim|own)[A-Za-z]+$' | sort)"
  same "$library has another SONAME" 'libzimcc.so.7' \
    "$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')"
  # The name, then every instruction up to the jump, without the filling behind it.
  same "$library has stubs that do more than load a slot and jump" "$(sed 's/$/ mov jmp/' <<<"$exports")" \
    "$(objdump -d --no-show-raw-insn --section=.text "$library" | awk '
        /^[0-9a-f]+ <zimi/ { gsub(/[<>:]/, "", $2); stub = $2; next }
        /^$/ { stub = "" }
        stub != "" && NF { stub = stub " " $2; if ($2 == "jmp") { print stub; stub = "" } }' | sort)"
done
exit $((failures > 0))
