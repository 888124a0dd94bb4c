# shellcheck shell=bash
# The common head of ./run, ./test and what they hand over to on macOS. Sourced.
started=$SECONDS
step() { printf '\n== %s\n' "$*"; }
fail() { printf '\nFAILED after %d s: %s\n' $((SECONDS - started)) "$*"; exit 1; }

# build NAME PRESET [TARGET...]: configures and builds, and says where the log of NAME lies.
# More CMake entries stand in the array cmake_entries.
cmake_entries=()
build() {
  local log=build/$1-configure-$2.log preset=$2
  shift 2
  mkdir -p build
  cmake --preset "$preset" ${cmake_entries[@]+"${cmake_entries[@]}"} >"$log" 2>&1 || {
    tail -n 25 "$log"
    fail "configuring $preset did not work; the whole log is $log"
  }
  cmake --build --preset "$preset" ${1+--target "$@"} ||
    fail "the build of $preset did not work; what went wrong stands above"
}
