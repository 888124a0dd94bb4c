# shellcheck shell=bash disable=SC2034
# The one list of Homebrew formulae that the project needs, by purpose, and their installation.
# Sourced by scripts/macos/run and scripts/macos/test. All are for building: Vellora.app itself needs
# nothing outside the system, the companion ICU, pugixml, MeCab and TagLib.

packages_build=(cmake ninja nlohmann-json fmt fast_float icu4c cli11 pugixml mecab mecab-ipadic taglib)
packages_test=(googletest)

# install_packages WHAT_FOR FORMULA...
install_packages() {
  local why=$1 formula missing=()
  shift
  xcode-select -p >/dev/null 2>&1 || {
    echo "   Apple's compiler is missing. Install it with: xcode-select --install" >&2
    return 1
  }
  command -v brew >/dev/null || {
    echo "   Homebrew is missing, which installs what is needed $why: $*" >&2
    echo "   Get it from https://brew.sh, or install these your own way and call this again with --no-install." >&2
    return 1
  }
  for formula in "$@"; do
    brew list --formula --versions "$formula" >/dev/null 2>&1 || missing+=("$formula")
  done
  if [ ${#missing[@]} -eq 0 ]; then
    echo "   nothing is missing $why"
    return 0
  fi
  echo "   installing ${#missing[@]} formulae $why: ${missing[*]}"
  HOMEBREW_NO_AUTO_UPDATE=1 brew install --quiet "${missing[@]}"
}

# Where Homebrew keeps its headers and libraries, for CMake; ICU lies apart, for the system has one.
homebrew_prefix() { command -v brew >/dev/null && echo "$(brew --prefix);$(brew --prefix icu4c)"; }
