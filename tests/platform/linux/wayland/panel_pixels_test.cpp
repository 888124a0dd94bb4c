// The panel's pixels on a real compositor.
#include <gtest/gtest.h>

#include "platform/linux/wayland/panel_desk.h"

namespace vellora {
namespace {

class WaylandPanelPixels : public testing::Test, protected WaylandDesk {
 protected:
  // The output as it is without the panel, and then with it.
  void expectPanel(const Rect& frame, double scale) {
    // A size that is whole at each of the scales, so that the picture of it is exact.
    sway.command(std::string("output ") + Sway::first + " resolution 1200x900 scale " +
                 std::to_string(scale));
    ASSERT_TRUE(runLoopUntil([&] {
      const Output* const output = session->layout().primary();
      return output->pixels == Size{1200, 900} && output->scale == scale;
    }));
    const CairoSurfacePtr before = sway.picture(Sway::first);
    pictures = {{chequeredPicture(101, 41, scale, 1), {17, 23, 101, 41}},
                {chequeredPicture(60, 30, scale, 2), {70.4, 40.7, 60, 30}},
                {chequeredPicture(90, 50, scale, 3), {frame.width - 30, 5, 90, 50}}};
    show(frame);
    EXPECT_TRUE(comesToShow(
        Sway::first, before.get(), static_cast<int>(std::lround(frame.x * scale)),
        static_cast<int>(std::lround(frame.y * scale)), {frame.width, frame.height}, scale))
        << "scale " << scale;
  }
};

TEST_F(WaylandPanelPixels, AreThoseOfTheDrawingAtScaleOne) { expectPanel({101, 53, 400, 300}, 1); }
TEST_F(WaylandPanelPixels, AreThoseOfTheDrawingAtScaleOneAndAQuarter) {
  expectPanel({101, 53, 400, 300}, 1.25);
}
TEST_F(WaylandPanelPixels, AreThoseOfTheDrawingAtScaleOneAndAHalf) {
  expectPanel({101, 53, 400, 300}, 1.5);
}
TEST_F(WaylandPanelPixels, AreThoseOfTheDrawingAtScaleTwo) { expectPanel({101, 53, 400, 300}, 2); }

}  // namespace
}  // namespace vellora
