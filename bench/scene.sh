# What bench/following and bench/glide watch: the overlay, following the stand-in player and fed with
# the demonstration's songs. Sourced, within a session. Sets work, exchange, player, companion, overlay and pids;
# all is stopped and removed when the script ends.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/vellora-bench-XXXXXX") || exit 1
exchange=$work/Vellora
mkdir "$exchange"
pids=()
stop_all() {
  local i
  for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
    kill -TERM "${pids[i]}" 2>/dev/null
    kill -CONT "${pids[i]}" 2>/dev/null
    wait "${pids[i]}" 2>/dev/null
  done
  rm -rf "$work"
}
trap stop_all EXIT

follows() { grep -q '"Following Music • ' "$exchange/status.json" 2>/dev/null; }

# Whether captions are shown at the end. A song's end or one slow second of the machine takes them away
# for a moment: they have five seconds to be there again.
still_follows() {
  for _ in {1..50}; do
    follows && return 0
    sleep 0.1
  done
  echo "the captions went away meanwhile"
  return 1
}

# start_scene BUILD_FOLDER [PLAYER_OPTION...]: until captions are shown. OVERLAY may name the overlay
# of another build; overlay_environment has NAME=VALUEs for it alone.
overlay_environment=()
start_scene() {
  local bin=$1; shift
  "$bin/demo/vellora-demo-player" --song 1 "$@" >"$work/player.log" 2>&1 &
  pids+=($!) player=$!
  "$bin/src/main/vellora-companion" --plain --exchange "$exchange" "$here/demo/songs" >"$work/companion.log" 2>&1 &
  pids+=($!) companion=$!
  env "${overlay_environment[@]}" "${OVERLAY:-$bin/src/main/vellora}" --snapshot "$exchange/snapshot.json" >"$work/overlay.log" 2>&1 &
  pids+=($!) overlay=$!
  for _ in {1..300}; do
    follows && return 0
    sleep 0.1
  done
  echo "no captions came"
  exit 1
}
