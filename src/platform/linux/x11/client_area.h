#pragma once

#include <optional>
#include <vector>

#include "base/rect.h"
#include "platform/linux/x11/x_property.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {

// A question for the place of a window's client area, asked but not yet taken: one round trip for
// as many as there are. Main thread.
class ClientAreaQuestion {
 public:
  ClientAreaQuestion(const XSession& session, xcb_window_t window);

  // In device pixels from the top left of the screen, without border, and without the shadow that
  // the program itself draws around its window (_GTK_FRAME_EXTENTS, which GNOME's window managers
  // and toolkits agree on); nothing when the window is gone. Once.
  std::optional<Rect> take();

 private:
  xcb_connection_t* connection_;
  xcb_get_geometry_cookie_t geometry_;
  xcb_translate_coordinates_cookie_t origin_;
  PropertyQuestion shadow_;
};

// Where the client area of one window is, through all moves: of a window that a window manager put
// into a frame, the frame's moves count too, whether or not the window is told of them (ICCCM
// 4.1.5). Nothing is asked while nothing moves. The caller has the session tell the window's own
// StructureNotify and PropertyChange events; those of its frames this class asks for. Main thread.
class ClientArea {
 public:
  explicit ClientArea(XSession& session) : session_(session) {}

  // From here on this window; none: no window.
  void follow(xcb_window_t window);

  // Takes note of an event.
  void handleEvent(const xcb_generic_event_t& event);
  // The connection went, and the window with it.
  void forget();

  // As ClientAreaQuestion has it. Waits for the server where something has changed.
  std::optional<Rect> read();

 private:
  bool isFollowed(xcb_window_t window) const;
  void hear(std::uint32_t events);
  void findFrames();

  XSession& session_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  std::vector<xcb_window_t> frames_;  // outwards, without the root
  bool framesKnown_ = false;
  bool areaKnown_ = false;
  std::optional<Rect> area_;
};

}  // namespace vellora
