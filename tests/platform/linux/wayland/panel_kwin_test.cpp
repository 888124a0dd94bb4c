// The panel on KWin, whose outputs can be unplugged and have scales that are no whole numbers. What
// it looks like there, the tests of whole desktops look at.
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/wayland/panel_desk.h"

namespace vellora {
namespace {

class WaylandPanelOnKWin : public testing::Test, protected WaylandDesk {
 protected:
  // Words of kscreen-doctor.
  void tell(const std::string& words) {
    setenv("QT_QPA_PLATFORM", "wayland", 1);
    ChildProgram program({"kscreen-doctor", words}, "");
    ASSERT_EQ(program.wait(), 0);
  }
  void showOnePicture(const Rect& frame) {
    pictures = {{chequeredPicture(100, 40, 1, 1), {50, 60, 100, 40}}};
    show(frame);
  }
  bool comesToHave(int outputs) {
    return runLoopUntil([&] { return std::ssize(session->layout().outputs) == outputs; });
  }
};

TEST_F(WaylandPanelOnKWin, SendsNothingForWhatChangesNothing) {
  showOnePicture({101, 53, 400, 300});
  ASSERT_TRUE(isShown());
  const std::size_t before = bytesSent();
  const int drawn = drawings;
  view->setNeedsDisplay();
  runLoopDry();
  EXPECT_GT(drawings, drawn);
  EXPECT_EQ(bytesSent(), before);
  pictures[0].destination.y += 1;
  view->setNeedsDisplay();
  runLoopDry();
  EXPECT_GT(bytesSent(), before);
  EXPECT_TRUE(isShown());
}

TEST_F(WaylandPanelOnKWin, ComesBackWithItsOutputAndGoesToAnotherWithThePlayer) {
  ASSERT_TRUE(comesToHave(2));
  showOnePicture({1380, 50, 400, 300});
  ASSERT_TRUE(isShown());
  tell("output.Virtual-1.disable");
  ASSERT_TRUE(comesToHave(1));
  settle();
  EXPECT_EQ(buffers(), 0);
  tell("output.Virtual-1.enable");
  ASSERT_TRUE(comesToHave(2));
  EXPECT_TRUE(runLoopUntil([] { return buffers() > 0; })) << "unasked";
  EXPECT_TRUE(isShown());
  tell("output.Virtual-1.disable");
  ASSERT_TRUE(comesToHave(1));
  move({200, 80, 400, 300});
  EXPECT_TRUE(isShown());
  EXPECT_GT(buffers(), 0);
}

TEST_F(WaylandPanelOnKWin, TakesAScaleThatIsNoWholeNumber) {
  showOnePicture({100, 50, 400, 300});
  ASSERT_TRUE(isShown());
  EXPECT_EQ(view->windowScale(), 1);
  tell("output.Virtual-0.scale.1.5");
  EXPECT_TRUE(runLoopUntil([&] { return view->windowScale() == 1.5; }));
  move({100, 50, 400, 300});
  EXPECT_TRUE(isShown());
}

}  // namespace
}  // namespace vellora
