# The one list of Debian packages that the project needs, by purpose. Sourced by ./run, ./test and
# bench/run; nothing here is executed.

packages_build=(
  g++ cmake ninja-build pkg-config
  libcairo2-dev libfontconfig-dev libpango1.0-dev libglib2.0-dev
  libxcb1-dev libxcb-composite0-dev libxcb-shape0-dev libxcb-xfixes0-dev libxcb-randr0-dev libxcb-res0-dev libxcb-icccm4-dev libxcb-ewmh-dev
  libsystemd-dev libdbusmenu-glib-dev libicu-dev
  nlohmann-json3-dev libfmt-dev libfast-float-dev
  libgtk-3-dev libwayland-dev libwayland-bin wayland-protocols
  libcli11-dev libcurl4-openssl-dev libncurses-dev libpugixml-dev libmecab-dev libtag1-dev
)

packages_run=(
  at-spi2-core dbus
  fonts-inter fonts-noto-core fonts-noto-cjk fonts-noto-color-emoji
  xdg-utils desktop-file-utils
  mecab-ipadic-utf8
)

# A session of its own where there is no display, and the tests' tools.
packages_session=(
  xvfb openbox picom libatk-adaptor xdotool wmctrl x11-utils imagemagick libglib2.0-bin
)

packages_test=(
  libgtk-4-dev python3-pyqt5 plasma-wayland-protocols bubblewrap xdg-dbus-proxy
  apertium-eng-spa libvterm-dev zsh fish i3lock dunst
  libgtest-dev libgmock-dev googletest librapidcheck-dev python3 python3-jsonschema
  clang-19 libclang-rt-19-dev libc++-19-dev libc++abi-19-dev clang-format-14 clang-tidy-14
  appstream mandoc dpkg-dev lintian systemd libfaketime x11-xserver-utils valgrind
)

# Wayland compositors that need no screen, what takes pictures of them, their X server, a terminal to
# click at, what unplugs KWin's outputs, and what Qt's programs need there.
packages_wayland=(
  sway kwin-wayland mutter grim xwayland x11-xserver-utils foot libkf5screen-bin qtwayland5
)

# Real browsers, for their tests and for ./run --browser, and a sound server that needs no device: a
# page's player shows itself only where its sound can be played. About 200 MB to download.
packages_browsers=(chromium firefox-esr pulseaudio)

# The last line: programs that the overlay is metered beside, what runs the meter, and what draws plots.
packages_bench=(
  libbenchmark-dev libopencv-dev libatspi2.0-dev libx11-dev libxdamage-dev strace rapidjson-dev
  conky-std dunst python3 gnuplot-nox
)

# For scripts/fuzz.
packages_fuzz=(clang-19 libclang-rt-19-dev)

# For scripts/try_packages, which says so when it is missing.
packages_try=(debootstrap)
