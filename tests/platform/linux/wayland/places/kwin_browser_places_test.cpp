// Where a browser's native window is on KWin: what the accessibility room tells against what is
// on the screen.
#include "platform/linux/wayland/places/kwin_places.h"

namespace vellora {
namespace {

class BrowsersOnKWin : public KWinPlaces {};

TEST_F(BrowsersOnKWin, FirefoxIsWhereItIsToldToBe) {
  start(firefox());
  ASSERT_TRUE(eventuallyRight());
  command("w.frameGeometry = {x: 101, y: 57, width: 700, height: 600};");
  EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x == 114; }));
  command("w.fullScreen = true;");
  EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x == 13; }));
}

}  // namespace
}  // namespace vellora
