#!/usr/bin/env bash
# What the libraries show to others: exactly the public names, each operation a stub of two instructions in the order of
# the names, and the core services left for others to supply.
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

all=$(printf 'zimccGetLibVersion\n%s' "$exports")
services=$'zimFree\nzimMalloc'
((${ZIMCC_OPENMP:-1})) && services=$'ownGetNumThreads\n'$services

for library; do
  if [[ $library == *.dll ]]; then
    headers=$(objdump -p "$library")
    name=zimccmx-7.0.dll
    named=$(sed -n 's/^Name.* //p' <<<"$headers")
    exported=$(sed -nE '/Ordinal\/Name Pointer/,/^$/ s/^\t\[ *[0-9]+\] //p' <<<"$headers")
    imported=$(sed -n '/DLL Name: zimcore-7.0.dll/,/^$/ s/.* //p' <<<"$headers" | grep -oE '^(zim|own)[A-Za-z]+$')
  else
    name=libzimcc.so.7
    named=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
    exported=$(nm -D --defined-only "$library" | awk '{print $3}' | sort)
    imported=$(nm -D --undefined-only "$library" | grep -oE '\b(zim|own)[A-Za-z]+$' | sort)
  fi
  same "$library has another name" "$name" "$named"
  same "$library exports other names" "$all" "$exported"
  same "$library imports other core services" "$services" "$imported"
  # The name, then every instruction up to the jump, without the filling behind it.
  # shellcheck disable=SC2001  # at the end of every line
  same "$library has stubs that do more than load a slot and jump, or in another order" \
    "$(sed 's/$/ mov jmp/' <<<"$exports")" \
    "$(objdump -d --no-show-raw-insn --section=.text "$library" | awk '
        /^[0-9a-f]+ <zimi/ { gsub(/[<>:]/, "", $2); stub = $2; next }
        /^$/ { stub = "" }
        stub != "" && NF { stub = stub " " $2; if ($2 == "jmp") { print stub; stub = "" } }')"
done
exit $((failures > 0))
