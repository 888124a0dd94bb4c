# The Debian packages: `cpack -G DEB --config BUILD/CPackConfig.cmake`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vellora)
set(CPACK_PACKAGE_VENDOR "the Vellora authors")
# A stand-in: ".invalid" is nobody's (RFC 2606). docs/release-checklist.md has what to put here.
set(CPACK_PACKAGE_CONTACT "Vellora maintainers <maintainers@vellora.invalid>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
# Each package has a summary of its own: the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL overlay)
if(TARGET vellora-companion)
  list(APPEND CPACK_COMPONENTS_ALL companion)
endif()
if(TARGET vellora-demo-player AND TARGET vellora-companion)
  list(APPEND CPACK_COMPONENTS_ALL demo)
endif()
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_OVERLAY_PACKAGE_NAME vellora)
set(CPACK_COMPONENT_OVERLAY_DESCRIPTION
"translated lyrics over a player's own Lyrics view
Vellora reads the lyric rows of a music player's window through the
accessibility interface, looks each of them up in a translation that a
companion program writes, and draws it as a soft caption below the row, in a
transparent window that lets every click through.

It needs an X11 session, where captions are opaque boxes without a
compositor, or a Wayland compositor with the layer shell, such as sway or
KWin.")
set(CPACK_DEBIAN_OVERLAY_PACKAGE_DEPENDS "at-spi2-core, default-dbus-session-bus | dbus-session-bus")
set(CPACK_DEBIAN_OVERLAY_PACKAGE_RECOMMENDS
  "fonts-inter, fonts-noto-core, fonts-noto-cjk, fonts-noto-color-emoji, xdg-utils")
# The last two have the medium weight of other scripts than Latin; they are 2.5 times as large as all
# the fonts recommended together.
set(CPACK_DEBIAN_OVERLAY_PACKAGE_SUGGESTS
  "vellora-companion, vellora-demo, fonts-noto-cjk-extra, fonts-noto-extra")

set(CPACK_DEBIAN_COMPANION_PACKAGE_NAME vellora-companion)
set(CPACK_COMPONENT_COMPANION_DESCRIPTION
"feeds Vellora with the translations of songs in a folder
The companion finds the song that plays among files of lyrics and their
translations, and keeps the overlay's captions fresh while it plays. It shows
the song and its current line in the terminal, and steers the player.")
# The certificates are for lyrics from a service.
set(CPACK_DEBIAN_COMPANION_PACKAGE_RECOMMENDS "vellora, ca-certificates, mecab-ipadic-utf8")
set(CPACK_DEBIAN_COMPANION_PACKAGE_SUGGESTS "apertium, curl, jq")
# Kept through updates as the user left it.
file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/conffiles" "/etc/xdg/autostart/vellora-companion.desktop\n")
set(CPACK_DEBIAN_COMPANION_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_BINARY_DIR}/conffiles")

set(CPACK_DEBIAN_DEMO_PACKAGE_NAME vellora-demo)
set(CPACK_COMPONENT_DEMO_DESCRIPTION
"stand-in player that shows what Vellora does
A silent music player with songs in several languages shows Vellora's captions
without any other player. vellora-demo starts it, the companion and the
overlay.")
set(CPACK_DEBIAN_DEMO_PACKAGE_DEPENDS
  "vellora (= ${PROJECT_VERSION}), vellora-companion (= ${PROJECT_VERSION}), x11-utils, dbus")
set(CPACK_DEBIAN_DEMO_PACKAGE_RECOMMENDS "openbox | x-window-manager, picom | x-composite-manager")
set(CPACK_DEBIAN_DEMO_PACKAGE_SUGGESTS "xvfb, xdotool")

# A prefix of /usr does not take the configuration along: it stays in /etc.
file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/move_configuration.cmake" [[
file(GLOB folders "${CPACK_TEMPORARY_DIRECTORY}/*/usr/etc")
foreach(folder IN LISTS folders)
  get_filename_component(root "${folder}/../.." ABSOLUTE)
  file(RENAME "${folder}" "${root}/etc")
endforeach()
]])
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_BINARY_DIR}/move_configuration.cmake")

include(CPack)
