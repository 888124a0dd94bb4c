#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

// For tests of a locator beside the compositor that it speaks to: waits in the loop until it knows
// what it should, false where that takes too long.
class LocatorFixture : public testing::Test {
 protected:
  bool eventuallyFront(int process) {
    return runLoopUntil([&] {
      const auto front = locator->frontWindow();
      return front && front->process == process;
    });
  }
  bool eventuallyUnknown() {
    return runLoopUntil([&] { return !locator->isKnown(); });
  }

  std::unique_ptr<WindowLocator> locator;
};

}  // namespace vellora
