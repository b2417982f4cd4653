#!/usr/bin/env bash
# What the documentation says, as far as a machine can tell: the C examples compile as C99 and run (each asserts what it
# shows), the names of exports exist, the pages of the families name them all, and links lead to files.
#   usage: tests/docs_test.sh SOURCE_DIR LIBRARY_DIR [COMPILER]
# Names may stand together, as zimiRGBToXYZ_{8u,16u}_C3R; a star stands for anything.
set -uo pipefail
export LC_ALL=C

cd "$1" || exit 1
libraries=$(realpath "$2")
compiler=${3:-cc}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failures=0
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}

pages=(README.md docs/*.md docs/families/*.md)
families=(docs/families/*.md)

# Every block of C is a file that knows its page and line; one with a main function is run.
awk -v folder="$folder" '
  /^```c$/ { inside = 1; file = folder "/" ++count ".c"; print "#line " FNR + 1 " \"" FILENAME "\"" >file; next }
  /^```$/ && inside { inside = 0; close(file) }
  inside { print >file }' "${pages[@]}"
examples=("$folder"/*.c)
[[ -e ${examples[0]} ]] || fail 'no examples'
for example in "${examples[@]}"; do
  flags=(-std=c99 -pedantic -Wall -Wextra -Werror -Iinclude)
  program=${example%.c}
  where=$(sed -n '1s/^#line //p' "$example")
  if grep -q '^int main' "$example"; then
    if "$compiler" "${flags[@]}" -o "$program" "$example" -L"$libraries" -Wl,-rpath,"$libraries" -lzimcc -lzimcore; then
      "$program" >/dev/null || fail "the example at $where"
    else
      fail "compiling the example at $where"
    fi
  else
    "$compiler" "${flags[@]}" -fsyntax-only "$example" || fail "compiling the example at $where"
  fi
done

sed -n 's/^ZIM_EXPORT(\(.*\))$/\1/p' frame/exports.def | sort >"$folder/exports"
# The names that stand between backticks, one a line, with braces taken apart.
named() {
  # shellcheck disable=SC2016
  grep -ohE '`zimi[A-Za-z0-9_{},*]+`' "$@" | tr -d '`' | sort -u | while read -r word; do
    # Only letters, braces, commas and stars: nothing else for the shell to expand.
    set -f
    eval "printf '%s\n' $word"
  done | sort -u
}
for page in "${pages[@]}"; do
  while read -r name; do
    grep -qxE "${name//\*/.*}" "$folder/exports" || fail "$page names $name, which is no export"
  done < <(named "$page")
done
missing=$(comm -23 "$folder/exports" <(named "${families[@]}"))
[[ -z $missing ]] || fail "on no page of a family: $missing"

for page in "${pages[@]}"; do
  while read -r link; do
    [[ $link == http* || $link == '#'* || -e $(dirname "$page")/${link%%#*} ]] || fail "$page links to $link"
  done < <(grep -oE '\]\([^) ]+\)' "$page" | sed 's/^](//; s/)$//')
done

((failures == 0)) || exit 1
