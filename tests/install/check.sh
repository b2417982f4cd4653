#!/usr/bin/env bash
# Installs a build and uses it as other programs do: through the CMake package, through pkg-config, as a subdirectory.
# The examples serve as the consumers.
#   usage: check.sh BUILD_DIR
set -euo pipefail

source=$(cd "$(dirname "$0")/../.." && pwd)
build=$(realpath "${1:?usage: check.sh BUILD_DIR}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

step() { printf -- '-- install check: %s\n' "$*"; }
fail() {
  printf 'install check failed: %s\n' "$*" >&2
  exit 1
}

# The build that the loader picks here: v3 where the machine has that level.
loaderPick=mx
if /lib64/ld-linux-x86-64.so.2 --help | grep -q 'x86-64-v3 (supported'; then loaderPick=v3; fi

# Runs both examples of a folder, and the first on either build of the library.
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
for library in libzimcc libzimcore glibc-hwcaps/x86-64-v3/libzimcc; do
  [[ -f $prefix/lib/$library.so.7 ]] || fail "lib/$library.so.7 is missing"
done

step "the tool, its manual and completion, the Python package"
"$prefix/bin/zimcc" version | grep -q "^target *$loaderPick\$" || fail "the installed tool takes another build"
for file in man/man1/zimcc.1 man/man7/zimcc.7 bash-completion/completions/zimcc doc/zimcc/examples/gray.c; do
  [[ -f $prefix/share/$file ]] || fail "share/$file is missing"
done
if /usr/bin/python3 -c 'import numpy' 2>/dev/null; then
  code='import zimcc; print(len(zimcc.exports()), zimcc.__version__, zimcc.version().target)'
  said=$(PYTHONPATH=$prefix/lib/python3/dist-packages /usr/bin/python3 -c "$code")
  [[ $said == "493 $(pkg-config --modversion "$prefix/lib/pkgconfig/zimcc.pc") $loaderPick" ]] || fail "Python says: $said"
fi

step "headers alone, as C99 and C++17"
for header in "$prefix"/include/*.h; do
  for compiler in 'cc -x c -std=c99' 'c++ -x c++ -std=c++17'; do
    $compiler -Wall -Wextra -Werror -pedantic -fsyntax-only "$header"
  done
done

step "find_package"
buildWithCMake "$prefix/share/doc/zimcc/examples" "$work/package" -DCMAKE_PREFIX_PATH="$prefix"
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

# Beside the build and with its flags, so that a compiler cache can help.
step "add_subdirectory"
rm -rf "$build-subproject"
buildWithCMake "$source/tests/install/subproject" "$build-subproject" -DZIMCC_WERROR=ON
runExamples "$build-subproject/examples"
rm -rf "$build-subproject"

step "passed"
