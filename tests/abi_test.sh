#!/usr/bin/env bash
# The binary interface that the headers declare is the one on record: functions, parameters, records, enumerations. The
# exports of the libraries are the concern of symbols_test, and no body compiles whose type is not the declared one. Since
# exported names are stubs, of which debug information says nothing, a library is made of the declarations themselves.
#   usage: abi_test.sh SOURCE_DIR    with ZIMCC_UPDATE_ABI=1: puts the interface on record
set -euo pipefail

source=$1
record=$source/tests/zimcc.abi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Each function gets a body, each enumeration a variable, without which it would not show.
cat "$source"/include/*.h | cc -E -P -x c - -I "$source/include" | awk '
    /^[A-Za-z].*[ *](zim|own)[A-Za-z0-9_]*\(/ { inFunction = 1 }
    inFunction && sub(/\);$/, ") { __builtin_trap(); }") { inFunction = 0 }
    /^enum \{/ { inEnumeration = 1 }
    inEnumeration && sub(/\};$/, "} enumeration" ++count ";") { inEnumeration = 0 }
    { print }' >"$work/interface.c"
cd "$work"
cc -g -shared -fPIC -o interface.so interface.c
abidw --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names --no-elf-needed --type-id-style hash \
  --out-file interface.abi interface.so
if [[ ${ZIMCC_UPDATE_ABI-} ]]; then cp interface.abi "$record"; fi
abidiff "$record" interface.abi
