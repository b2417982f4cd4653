#!/usr/bin/env bash
# Installs a build and uses it as other programs do: through the CMake package, through pkg-config, as a subdirectory.
# The examples serve as the consumers.
#   usage: check.sh BUILD_DIR
set -euo pipefail

source=$(cd "$(dirname "$0")/../.." && pwd)
build=${1:?usage: check.sh BUILD_DIR}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

step() { printf -- '-- install check: %s\n' "$*"; }
fail() {
  printf 'install check failed: %s\n' "$*" >&2
  exit 1
}

# The build that the loader picks here: that of the highest level that the machine has.
loaderPick=mx
for level in v3 v4; do
  if /lib64/ld-linux-x86-64.so.2 --help | grep -q "x86-64-$level (supported"; then loaderPick=$level; fi
done

# Runs both examples of a folder, and the first on the baseline as well.
runExamples() {
  local gray=$1/zimcc_example_gray
  "$1/zimcc_example_own_services"
  "$gray" | tee "$work/gray.txt"
  grep -q "built for $loaderPick\$" "$work/gray.txt" || fail "the loader did not pick the $loaderPick build"
  GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2 "$gray" | grep -q 'built for mx$' || fail "the mx build cannot be forced"
}

# Shows what a command printed only if it fails.
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log"; return 1; }; }

buildWithCMake() {
  local folder=$1 to=$2
  shift 2
  quietly cmake -S "$folder" -B "$to" -G Ninja -DCMAKE_BUILD_TYPE=Release "$@"
  quietly cmake --build "$to" -j "$(nproc)"
}

step "installing $build"
quietly cmake --install "$build" --prefix "$prefix"
for library in {,glibc-hwcaps/x86-64-v{3,4}/}libzimcc libzimcore; do
  [[ -f $prefix/lib/$library.so.7 ]] || fail "lib/$library.so.7 is missing"
done

step "headers alone, as C99 and C++17"
for header in "$prefix"/include/*.h; do
  for compiler in 'cc -x c -std=c99' 'c++ -x c++ -std=c++17'; do
    $compiler -Wall -Wextra -Werror -pedantic -fsyntax-only "$header"
  done
done

step "find_package"
buildWithCMake "$source/examples" "$work/package" -DCMAKE_PREFIX_PATH="$prefix"
runExamples "$work/package"

step "pkg-config"
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
flags="-Wall -Wextra -Werror -pedantic $(pkg-config --cflags --libs zimcc) -Wl,-rpath,$(pkg-config --variable=libdir zimcc)"
mkdir "$work/pkgconfig"
# shellcheck disable=SC2086  # a list of flags
{
  cc -std=c99 "$source/examples/gray.c" -o "$work/pkgconfig/zimcc_example_gray" $flags
  c++ -std=c++17 "$source/examples/own_services.cpp" -o "$work/pkgconfig/zimcc_example_own_services" $flags
}
runExamples "$work/pkgconfig"

step "add_subdirectory"
buildWithCMake "$source/tests/install/subproject" "$work/subproject"
runExamples "$work/subproject/examples"

step "passed"
