#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "panel_fixture.h"

namespace vellora {

// A panel among the windows of other programs.
class PanelStackingTest : public PanelFixture {
 protected:
  bool isAbove(xcb_window_t upper, xcb_window_t lower) {
    const auto order = client.topLevels();
    return std::find(order.begin(), order.end(), upper) >
           std::find(order.begin(), order.end(), client.topLevelOf(lower));
  }

  void startWindowManager() {
    windowManager = std::make_unique<ChildProgram>(
        std::vector<std::string>{"openbox", "--sm-disable"}, server.display());
    ASSERT_TRUE(runLoopUntil(
        [&] { return !client.numbers(client.root(), "_NET_SUPPORTING_WM_CHECK").empty(); }));
  }

  xcb_window_t activeWindow() {
    const auto active = client.numbers(client.root(), "_NET_ACTIVE_WINDOW");
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active[0];
  }

  xcb_window_t makeActive(const Rect& place, std::uint32_t color) {
    const auto window = client.makeWindow(place, color);
    // A window manager that still starts may lose the first request.
    EXPECT_TRUE(runLoopUntil([&] {
      client.map(window);
      return client.isViewable(window);
    }));
    client.activate(window);
    EXPECT_TRUE(runLoopUntil([&] { return activeWindow() == window; }));
    return window;
  }

  std::unique_ptr<ChildProgram> windowManager;
};

}  // namespace vellora
