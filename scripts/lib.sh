# Shared by the scripts beside it, which source it: the packages of a fresh Debian 12 machine, steps, builds.
# shellcheck shell=bash disable=SC2034

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit
jobs=$(nproc)

buildPackages=(
  git g++ cmake ninja-build pkg-config ccache
  libpng-dev libffi-dev nlohmann-json3-dev                   # command-line tool
  libgtest-dev                                               # tests
  libbenchmark-dev                                           # benchmarks,
  libyuv-dev libswscale-dev libavutil-dev libzimg-dev        # and the peers that they compare with
)

say() { printf '== [%d:%02d] %s\n' $((SECONDS / 60)) $((SECONDS % 60)) "$*"; }

# Installs those of the named Debian packages that are missing.
need() {
  local package missing=() asRoot=()
  for package; do
    dpkg-query -W -f '${db:Status-Abbrev}\n' "$package" 2>/dev/null | grep -q '^ii' || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  say "installing ${missing[*]}"
  ((EUID == 0)) || asRoot=(sudo)
  "${asRoot[@]}" apt-get update -qq
  "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends "${missing[@]}" \
    >/dev/null
}

# Configures a preset and builds it, or only the named targets of it.
build() {
  local preset=$1
  shift
  # Several presets, and the check of the installed library, compile the same files with the same flags.
  if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=${CMAKE_C_COMPILER_LAUNCHER-ccache}
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  fi
  say "building preset $preset"
  cmake --preset "$preset" --log-level=NOTICE
  cmake --build --preset "$preset" -j "$jobs" ${1:+--target "$@"} -- --quiet
}
