#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <xcb/xcb.h>

namespace vellora::e2e {

// A settings manager as desktops have one, for the two settings that make every GTK window larger:
// the whole number that scales it, and the size of its fonts. Goes with its connection.
class DesktopSettings {
 public:
  DesktopSettings() : connection_(xcb_connect(nullptr, nullptr), xcb_disconnect) {
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(c())).data;
    xcb_create_window(c(), XCB_COPY_FROM_PARENT, window_, screen->root, -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    set(1, 96);
    xcb_set_selection_owner(c(), window_, atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
    xcb_flush(c());
  }
  // `dotsPerInch`: 96 is a desktop's usual one.
  void set(std::uint32_t scale, std::uint32_t dotsPerInch) {
    ++serial_;
    std::string bytes(4, '\0');  // least significant byte first
    bytes += number(serial_) + number(3) + setting("Gdk/WindowScalingFactor", scale) +
             setting("Gdk/UnscaledDPI", dotsPerInch * 1024) +
             setting("Xft/DPI", scale * dotsPerInch * 1024);
    const xcb_atom_t settings = atom("_XSETTINGS_SETTINGS");
    xcb_change_property(c(), XCB_PROP_MODE_REPLACE, window_, settings, settings, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
    xcb_flush(c());
  }

 private:
  static std::string number(std::uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
  }
  // A whole number: its type, the length of its name, the name and its serial.
  std::string setting(std::string_view name, std::uint32_t value) const {
    std::string bytes(2, '\0');
    bytes += number(static_cast<std::uint32_t>(name.size())).substr(0, 2);
    bytes += name;
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes + number(serial_) + number(value);
  }
  xcb_connection_t* c() const { return connection_.get(); }
  xcb_atom_t atom(const char* name) const {
    const auto cookie =
        xcb_intern_atom(c(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(c(), cookie, nullptr), std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }

  std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
  xcb_window_t window_ = xcb_generate_id(c());
  std::uint32_t serial_ = 0;
};

}  // namespace vellora::e2e
