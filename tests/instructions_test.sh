#!/usr/bin/env bash
# A build of the library has no instruction beyond its processor target, and none that fuses a product and a sum, which
# gives other bits. The judge is the assembler: it reads every instruction again, for a processor that has no more than the
# target has. Markers of branch targets (endbr64), which other processors skip, are free to all.
#   usage: instructions_test.sh TARGET LIBRARY
set -euo pipefail
export LC_ALL=C

target=$1 library=$2
declare -A features
features[mx]=generic64+ibt  # SSE2
features[v3]=${features[mx]}+cx16+sse4.2+popcnt+avx2+bmi+bmi2+f16c+lzcnt+movbe
features[v4]=${features[v3]}+avx512f+avx512bw+avx512cd+avx512dq+avx512vl
[[ -v features[$target] ]] || { echo "instructions: no target '$target'" >&2; exit 2; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Each instruction of our functions once, but for the addresses and distances that it names. A DLL has some of the C
# library's, too, with constants between them.
objdump -d --no-show-raw-insn "$library" | sed -nE '
    /^[0-9a-f]+ <.*>:$/ h
    x; /zim/ !{ x; b }; x
    s/^ +[0-9a-f]+:\t//; T
    s/ *(<.*>|#.*)//g
    s/\b(jmp|call|j[a-z]+) +[0-9a-f]+$/\1 0/
    s/-?0x[0-9a-f]+/0x1/g
    s/data16 //g
    p' | sort -u >"$work/instructions.s"
(($(wc -l <"$work/instructions.s") > 1000)) || { echo "instructions: $library has hardly any" >&2; exit 1; }

failed=false
refuse() {
  failed=true
  echo "instructions: $library, $1:" >&2
  head -n 20 >&2
}
as -march="${features[$target]}" -o /dev/null "$work/instructions.s" 2>"$work/refused" || refuse "beyond $target" <"$work/refused"
grep -E '^v?fn?m(add|sub)' "$work/instructions.s" >"$work/fused" && refuse "products fused with sums" <"$work/fused"
! $failed
