// What every window system's view and panel promise, on a real compositor.
#include <algorithm>
#include <cstring>

#include "contracts/view_contract.h"
#include "platform/linux/wayland/panel_desk.h"

namespace vellora {
namespace {

constexpr std::uint32_t red = 0xffff0000;

// Its view is red all over, however large the panel is.
class SwayPanel final : public PanelSubject {
 public:
  SwayPanel() {
    CairoSurfacePtr pixels = makePixels(1280, 800);
    const CairoContextPtr context(cairo_create(pixels.get()));
    cairo_set_source_rgb(context.get(), 1, 0, 0);
    cairo_paint(context.get());
    cairo_surface_flush(pixels.get());
    desk_.pictures = {{std::make_shared<CairoImage>(std::move(pixels), Size{1280, 800}, Rect{}),
                       {0, 0, 1280, 800}}};
  }
  NativeView& view() override { return *desk_.view; }
  Panel& panel() override { return *desk_.panel; }
  bool isShown() override { return !redPart().isEmpty(); }
  Rect shownFrame() override {
    EXPECT_TRUE(desk_.isShown());
    const Rect place = redPart();
    return {place.x, 800 - place.maxY(), place.width, place.height};
  }

 private:
  // In points from the output's top left.
  Rect redPart() {
    // A surface is on the screen, or gone, after a few questions and answers.
    for (int i = 0; i < 10; ++i) desk_.settle();
    const CairoSurfacePtr seen = desk_.sway.picture(Sway::first);
    int left = 1280;
    int top = 800;
    int right = 0;
    int bottom = 0;
    for (int y = 0; y < 800; ++y) {
      for (int x = 0; x < 1280; ++x) {
        if (pixelAt(seen.get(), x, y) != red) continue;
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x + 1);
        bottom = std::max(bottom, y + 1);
      }
    }
    if (left >= right) return {};
    return {static_cast<double>(left), static_cast<double>(top), static_cast<double>(right - left),
            static_cast<double>(bottom - top)};
  }

  WaylandDesk desk_{WaylandDesk::Panels::unconfigured};
};

VELLORA_INSTANTIATE(Sway, View, SwayPanel);
VELLORA_INSTANTIATE(Sway, Panel, SwayPanel);

}  // namespace
}  // namespace vellora
