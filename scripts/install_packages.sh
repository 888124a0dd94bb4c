# Installs what is missing of the project's Debian packages. Sourced by ./run, ./test and bench/run
# after packages.sh.

# Of what apt-get prints: how much there is to do, and where it is. Fetching and unpacking take minutes.
tell_progress() {
  local line stage=
  while IFS= read -r line; do
    case $line in
      "Need to get "*|"After this operation, "*) echo "   ${line%.}" ;;
      "Unpacking "*) [ -n "$stage" ] || echo "   unpacking"; stage=${stage:-unpacking} ;;
      "Setting up "*) [ "$stage" = setup ] || echo "   setting up"; stage=setup ;;
    esac
  done
}

# install_packages WHAT_FOR PACKAGE...
install_packages() {
  local why=$1 package missing=() as_root=()
  shift
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null)" = 'install ok installed' ] ||
      missing+=("$package")
  done
  if [ ${#missing[@]} -eq 0 ]; then
    echo "   nothing is missing $why"
    return 0
  fi
  command -v apt-get >/dev/null || {
    echo "   Missing $why: ${missing[*]}" >&2
    echo "   This script installs packages with apt-get, which is not here. Install them your own way," >&2
    echo "   then call it again with --no-install." >&2
    return 1
  }
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "   Missing $why: ${missing[*]}" >&2
      echo "   Installing needs root, and there is no sudo. As root: apt-get install ${missing[*]}" >&2
      return 1
    }
    as_root=(sudo)
    echo "   sudo may ask for your password: packages are installed for the whole system."
  fi
  echo "   installing what is missing $why (${#missing[@]}): ${missing[*]}"
  local log
  log=$(mktemp)
  if ! (
    set -o pipefail
    { "${as_root[@]}" apt-get update &&
      "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
        apt-get install -y --no-install-recommends "${missing[@]}"; } 2>&1 </dev/null |
      tee "$log" | tell_progress
  ); then
    tail -n 25 "$log" >&2
    rm -f "$log"
    echo "   apt-get could not install them. Is the network there?" >&2
    return 1
  fi
  rm -f "$log"
}
