# Sourced by demo.sh, test.sh and the benchmarks: installs what is missing from
# Debian's packages and builds the project in build/.

SUITEDEPLOYER_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
SUITEDEPLOYER_BUILD="$SUITEDEPLOYER_ROOT/build"
BUILD_PACKAGES=(
  cmake g++ make
  qtbase5-dev qttools5-dev qttools5-dev-tools
  libspdlog-dev libfmt-dev
  libboost-filesystem-dev libboost-system-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev
)
# The fuzzers need clang with its libFuzzer runtime.
FUZZ_PACKAGES=(clang libclang-rt-14-dev)
# The Windows platform layer's tests: cross-compiled with mingw-w64 (GoogleTest
# from its sources, Boost's headers from the host) and run under Wine.
WINE_PACKAGES=(cmake make g++-mingw-w64-x86-64-posix wine64 googletest libboost-dev)
# The format check and the static analysis of scripts/tidy.sh.
TIDY_PACKAGES=(clang-format clang-tidy python3 git)

# Installs those of the named packages that are not installed yet, and nothing when all are.
ensure_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=()
  [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  echo "Installing missing packages: ${missing[*]}"
  "${sudo[@]}" apt-get update -qq
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}"
}

# Builds into build/, or with arguments into that folder with those cache settings.
build_project() {
  local folder=${1:-$SUITEDEPLOYER_BUILD}
  [ $# -gt 0 ] && shift
  cmake -S "$SUITEDEPLOYER_ROOT" -B "$folder" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
  cmake --build "$folder" -j"$(nproc)"
}
