// Where native windows of browsers are on sway: what the accessibility room tells against what is
// on the screen.
#include "platform/linux/wayland/places/sway_places.h"

namespace vellora {
namespace {

class BrowsersOnSway : public SwayPlaces {};

TEST_F(BrowsersOnSway, FirefoxIsWhereItIsToldToBe) {
  start(firefox());
  goThroughPlaces();
}

TEST_F(BrowsersOnSway, ChromiumIsWhereItIsToldToBe) {
  start(chromium());
  goThroughPlaces();
}

}  // namespace
}  // namespace vellora
