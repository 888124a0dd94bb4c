# Wayland compositors without a screen, for scripts/session, which sources this: start_sway,
# start_kwin and start_mutter set WAYLAND_DISPLAY, and DISPLAY for programs that speak X11 (Xwayland).
# Each is a compositor from Debian's packages as it is, told to draw into memory. $work, $logs, $size
# and $outputs are the session's; `start` and `await` too.

is_socket() { [ -S "$1" ]; }
has_text() { [ -s "$1" ]; }

# A program for a compositor to start: it writes down where the X server is, and stays as long as the
# session.
display_teller() {
  cat >"$work/tell-display" <<T
#!/bin/sh
echo "\$DISPLAY \$XAUTHORITY" >"$work/display"
while kill -0 $$ 2>/dev/null; do sleep 1; done
T
  chmod 755 "$work/tell-display"
  echo "$work/tell-display"
}

# sway refuses to run as root, so that its socket's folder belongs to the user whom it runs as. That
# user's X server is opened for every local program.
start_sway() {
  local folder user=()
  folder=$(mktemp -d "${TMPDIR:-/tmp}/vellora-sway-XXXXXX") || exit 125
  session_folders+=("$folder")
  {
    echo "output * resolution $size"
    echo "xwayland force"
    echo "default_border none"
    echo "focus_follows_mouse no"
    echo "exec xhost +local: >/dev/null && echo \"\$DISPLAY\" >$folder/display"
  } >"$folder/config"
  if [ "$(id -u)" = 0 ]; then
    user=(setpriv --reuid 65534 --regid 65534 --clear-groups)
    chown 65534:65534 "$folder"
  fi
  export SWAYSOCK=$folder/sway.sock
  start sway env HOME="$folder" XDG_RUNTIME_DIR="$folder" WLR_BACKENDS=headless \
    WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1 WLR_HEADLESS_OUTPUTS="$outputs" \
    "${user[@]}" sway --config "$folder/config"
  await sway has_text "$folder/display"
  export WAYLAND_DISPLAY=$folder/wayland-1
  DISPLAY=$(tr -d '\n' <"$folder/display"); export DISPLAY
}

# The packaged program carries a capability that some containers refuse to execute; a copy has none.
start_kwin() {
  cp "$(command -v kwin_wayland)" "$work/kwin_wayland" || exit 125
  start kwin env KWIN_COMPOSE=O2 KWIN_SCREENSHOT_NO_PERMISSION_CHECKS=1 KWIN_WAYLAND_NO_PERMISSION_CHECKS=1 QT_QPA_PLATFORM=wayland \
    "$work/kwin_wayland" --virtual --xwayland --no-lockscreen --no-global-shortcuts \
    --width "${size%x*}" --height "${size#*x}" --output-count "$outputs" --scale "$scale" \
    --socket vellora-kwin "$(display_teller)"
  await kwin has_text "$work/display"
  export WAYLAND_DISPLAY=$XDG_RUNTIME_DIR/vellora-kwin
  read -r DISPLAY XAUTHORITY <"$work/display"
  export DISPLAY XAUTHORITY
}

start_mutter() {
  start mutter mutter --wayland --headless --virtual-monitor "$size" \
    --wayland-display vellora-mutter -- "$(display_teller)"
  await mutter has_text "$work/display"
  export WAYLAND_DISPLAY=$XDG_RUNTIME_DIR/vellora-mutter
  read -r DISPLAY XAUTHORITY <"$work/display"
  export DISPLAY XAUTHORITY
}
