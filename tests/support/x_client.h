#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "base/rect.h"
#include "platform/linux/x11/xcb_types.h"

namespace vellora {

// Another program on the display, with a connection of its own, as a test needs it: it makes
// windows, writes and reads properties and looks at the screen. Every operation has reached the
// server when it returns.
class XClient {
 public:
  explicit XClient(const std::string& display);

  xcb_connection_t* connection() const { return connection_.get(); }
  xcb_window_t root() const { return screen_->root; }

  // Mapped; `color` 0xRRGGBB. A managed one is the window manager's business.
  xcb_window_t makeWindow(const Rect& frame, std::uint32_t color, bool managed = true);
  void map(xcb_window_t window);
  void destroyWindow(xcb_window_t window);
  void unmap(xcb_window_t window);
  void raise(xcb_window_t window);
  void placeAbove(xcb_window_t window, xcb_window_t sibling);
  // Puts it at the top left inside another, as a window manager does with its frames.
  void reparent(xcb_window_t window, xcb_window_t parent);

  void setText(xcb_window_t window, std::string_view property, std::string_view value);
  void setNumber(xcb_window_t window, std::string_view property, std::uint32_t value);
  void setWindows(xcb_window_t window, std::string_view property,
                  const std::vector<xcb_window_t>& windows);
  std::vector<std::uint32_t> numbers(xcb_window_t window, std::string_view property);
  std::string text(xcb_window_t window, std::string_view property);
  xcb_atom_t atom(std::string_view name);

  // Takes a selection, for a new window of this client's, which is the result.
  xcb_window_t own(std::string_view selection);
  xcb_window_t owner(std::string_view selection);

  // Asks the window manager as a pager would: _NET_ACTIVE_WINDOW, _NET_WM_STATE fullscreen.
  void activate(xcb_window_t window);
  void makeFullscreen(xcb_window_t window);

  // Adds a monitor of that name, 640 pixels wide, which shows what the screen's output shows or is
  // made up.
  void setMonitor(std::string_view name, bool primary, std::uint16_t height, bool withOutput);

  // What everybody sees at a pixel of the screen, 0xRRGGBB.
  std::uint32_t pixel(int x, int y);
  // What a window itself holds at its pixel, 0xAARRGGBB where it has an alpha channel.
  std::uint32_t pixelOf(xcb_window_t window, int x, int y);
  // Of the root's children, bottom first.
  std::vector<xcb_window_t> topLevels();
  Rect frame(xcb_window_t window);
  // The rectangles that the window consists of; nothing when it is whole.
  std::optional<std::vector<Rect>> boundingShape(xcb_window_t window);
  void setInputShape(xcb_window_t window, const Rect& shape);
  // As any program may: the server clears the window and asks its owner to paint it again.
  void clear(xcb_window_t window);
  bool isViewable(xcb_window_t window);
  xcb_window_t focused();
  // The root's child that holds `window`, itself for one that nobody wrapped.
  xcb_window_t topLevelOf(xcb_window_t window);
  // A button press went to this client's windows since the last call.
  bool sawClick();
  // Of the server's windows, the one with that class part; none when there is none.
  xcb_window_t findByClass(std::string_view classPart);

 private:
  void sync();
  void sendToRoot(xcb_window_t window, std::string_view type,
                  const std::vector<std::uint32_t>& data);

  XcbConnectionPtr connection_;
  const xcb_screen_t* screen_ = nullptr;
};

}  // namespace vellora
