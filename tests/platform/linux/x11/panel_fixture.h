#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include <cairo.h>
#include <gtest/gtest.h>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/x11/x_panel.h"
#include "platform/linux/x11/x_session.h"
#include "platform/linux/x11/x_window_system.h"
#include "support/x_client.h"
#include "support/x_server.h"

namespace vellora {

// A picture of one colour, with a plate that lies `margin` points inside it on every side.
inline std::shared_ptr<const CairoImage> plainPicture(double width, double height, double margin,
                                                      const Color& color, double scale = 1) {
  CairoSurfacePtr pixels = makePixels(static_cast<std::int64_t>(width * scale),
                                      static_cast<std::int64_t>(height * scale));
  const CairoContextPtr context(cairo_create(pixels.get()));
  cairo_set_source_rgba(context.get(), color.red, color.green, color.blue, color.alpha);
  cairo_paint(context.get());
  cairo_surface_flush(pixels.get());
  return std::make_shared<CairoImage>(
      std::move(pixels), Size{width, height},
      Rect{margin, margin, width - 2 * margin, height - 2 * margin});
}

// A server, a client that stands for everybody else, and a configured panel whose view draws
// `pictures`. The panel covers the screen's pixels (100, 50) to (500, 350) when it is given
// `frame`.
class PanelDesk {
 public:
  struct Placed {
    std::shared_ptr<const CairoImage> picture;
    Rect destination;
  };
  static constexpr std::uint32_t backdrop = 0x3060c0;
  static constexpr Rect frame{100, 450, 400, 300};  // y upward, the screen is 800 high

  PanelDesk() {
    unsetenv("GDK_SCALE");
    makeSession();
  }

  void makeSession() {
    panel.reset();
    session = std::make_shared<XSession>(server.display().c_str());
    view = XWindowSystem(session).makeView();
    view->setDrawFunction([this](Surface& surface) {
      ++drawings;
      for (const Placed& each : pictures) surface.drawImage(*each.picture, each.destination);
    });
    panel = std::make_unique<XPanel>(session, [this] { return now; });
  }

  // One red picture at the panel's (50, 60), 100 × 40, its plate 10 inside.
  void showOnePicture() {
    pictures = {{plainPicture(100, 40, 10, {1, 0, 0, 1}), {50, 60, 100, 40}}};
    panel->configure(*view);
    panel->setFrame(frame);
    view->setFrame({0, 0, frame.width, frame.height});
    panel->orderFrontRegardless();
    ASSERT_TRUE(runLoopUntil([&] { return own() != XCB_WINDOW_NONE && client.isViewable(own()); }));
    runLoopDry();
  }

  // Runs the loop until the session has dealt with everything that other programs did so far, and
  // the server with everything that the session answered.
  void settle() {
    struct Mark final : XEventListener {
      void handleEvent(const xcb_generic_event_t& event) override {
        seen = seen || (eventType(event) == XCB_PROPERTY_NOTIFY &&
                        eventAs<xcb_property_notify_event_t>(event).atom == atom);
      }
      xcb_atom_t atom = XCB_ATOM_NONE;
      bool seen = false;
    } mark;
    mark.atom = client.atom("_VELLORA_TEST_MARK");
    session->addListener(mark);
    client.setNumber(client.root(), "_VELLORA_TEST_MARK", 1);
    EXPECT_TRUE(runLoopUntil([&] { return mark.seen; }));
    session->removeListener(mark);
    runLoopDry();
    xcb_connection_t* const c = session->connection();
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
  }

  xcb_window_t own() { return client.findByClass("Vellora"); }

  // How many requests the session sends while `action` runs.
  template <typename Action>
  unsigned requestsDuring(const Action& action) {
    const unsigned before = xcb_no_operation(session->connection()).sequence;
    action();
    return xcb_no_operation(session->connection()).sequence - before - 1;
  }

  XServer server;
  XClient client{server.display()};
  std::shared_ptr<XSession> session;
  std::unique_ptr<NativeView> view;
  std::unique_ptr<Panel> panel;
  double now = 1000;  // on the panel's clock, which stands still, in seconds
  std::vector<Placed> pictures;
  int drawings = 0;
};

class PanelFixture : public testing::Test, protected PanelDesk {};

}  // namespace vellora
