#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

#include "platform/linux/window_system/pixel_rect.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {

// The overlay's window on the server: outside the window manager's care, without a background and
// without a border, with an alpha channel where the screen has a visual for it. Unmapped at first.
// Destroyed with this object. Every operation but making and mapping it is a request that the
// server answers on its own time. Main thread; the session must be present when it is made.
class PanelWindow {
 public:
  explicit PanelWindow(std::shared_ptr<XSession> session);
  ~PanelWindow();
  PanelWindow(const PanelWindow&) = delete;
  PanelWindow& operator=(const PanelWindow&) = delete;

  // Whether the server has made the window; there is nothing to be done with one that is not.
  bool isMade() const { return made_; }
  xcb_window_t id() const { return window_; }
  xcb_visualtype_t* visual() const { return visual_; }
  bool hasAlpha() const { return depth_ == 32; }

  // Clicks pass through, no shadow, and the hints by which pagers, task bars and window managers
  // leave it alone and show it on every desktop.
  void applySettings();

  void place(const PixelRect& frame);
  // False where the server refuses.
  bool map();
  void unmap();
  void lower();
  void raiseAbove(xcb_window_t sibling);

  // Everything outside these rectangles is no part of the window any more.
  void clip(const std::vector<PixelRect>& visible);
  void unclip();

  // Read from the server. Both false when there is no answer.
  bool passesClicks() const;
  bool isOpaque() const;

  // Another client destroyed the window: nothing is left to destroy.
  void release() { window_ = XCB_WINDOW_NONE; }

 private:
  void chooseVisual();

  std::shared_ptr<XSession> session_;
  xcb_visualtype_t* visual_ = nullptr;
  std::uint8_t depth_ = 0;
  xcb_colormap_t colormap_ = XCB_NONE;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  bool made_ = false;
};

}  // namespace vellora
