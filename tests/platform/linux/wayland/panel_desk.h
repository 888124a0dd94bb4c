#pragma once

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/wayland/panel/wayland_panel.h"
#include "platform/linux/wayland/session/wayland_session.h"
#include "platform/linux/window_system/hosted_view.h"
#include "support/x_server.h"

namespace vellora {

// A picture whose pixels are all different from their neighbours, some of them half transparent, so
// that one that is scaled, moved or cut does not look the same.
std::shared_ptr<const CairoImage> chequeredPicture(double width, double height, double scale,
                                                   unsigned seed);

// The session's sway, as a test steers it and looks at it: by its own means, without the panel's
// code.
class Sway {
 public:
  // Words of its configuration (sway(5)).
  void command(const std::string& words) const;
  nlohmann::json ask(const std::string& kind) const;
  // The pixels of an output, as they are on it.
  CairoSurfacePtr picture(const std::string& output) const;
  // What the focus is on: the id in the tree.
  std::int64_t focused() const;
  // The ids of all windows, in the tree's order.
  std::vector<std::int64_t> windows() const;
  pid_t pid() const;

  static constexpr auto first = "HEADLESS-1";
  static constexpr auto second = "HEADLESS-2";
};

// A configured panel on the session's compositor whose view draws `pictures`.
class WaylandDesk {
 public:
  struct Placed {
    std::shared_ptr<const CairoImage> picture;
    Rect destination;
  };

  enum class Panels { configured, unconfigured };
  explicit WaylandDesk(Panels panels = Panels::configured);

  // Runs the loop until the compositor has dealt with all that it was sent so far, and the panel
  // with all that it was answered.
  void settle();
  // Places are in points of the layout, y downward.
  void show(const Rect& frame);
  void move(const Rect& frame);

  // What an output looks like with those pictures over its background, by the drawing that goes
  // into a file: the panel's frame at `left`, `top`, in pixels.
  CairoSurfacePtr expected(cairo_surface_t* background, int left, int top, const Size& frame,
                           double scale) const;

  // Waits until the output looks like that, and until it looks as before with the pictures over it,
  // the panel's corner at that pixel.
  testing::AssertionResult comesToLook(const char* output, cairo_surface_t* wanted);
  testing::AssertionResult comesToShow(const char* output, cairo_surface_t* before, int left,
                                       int top, const Size& frame, double scale = 1);
  // Waits until the compositor has shown what it was given, so that the next change is drawn at
  // once.
  testing::AssertionResult isShown();
  // How many buffers for pixels the program has.
  static int buffers();
  // How much memory these take.
  static int kilobytesInBuffers();

  // How much the program has sent to the compositor so far.
  std::size_t bytesSent() const;

  Sway sway;
  std::shared_ptr<WaylandSession> session;
  std::unique_ptr<HostedView> view;
  std::unique_ptr<WaylandPanel> panel;
  std::vector<Placed> pictures;
  int drawings = 0;
};

// 0xAARRGGBB, premultiplied.
std::uint32_t pixelAt(cairo_surface_t* surface, int x, int y);

// Whether all pixels are the same, but for `tolerance` in each channel; says where the first one
// is that is not.
testing::AssertionResult areAlike(cairo_surface_t* seen, cairo_surface_t* expected,
                                  int tolerance = 1);

}  // namespace vellora
