#include "platform/linux/wayland/panel/panel_content.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/drawing/cairo_picture.h"

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<ShownPicture> picture(int width, int height, double blue = 0) {
  auto made = std::make_shared<ShownPicture>();
  made->pixels = makePixels(width, height);
  made->size = {static_cast<double>(width), static_cast<double>(height)};
  const CairoContextPtr context(cairo_create(made->pixels.get()));
  cairo_set_source_rgba(context.get(), 1, 0, blue, 0.5);
  cairo_paint(context.get());
  return made;
}

class PanelContentTest : public testing::Test {
 protected:
  // The panel lies 2 pixels inside a surface of 204 × 104.
  PanelContent content(std::vector<Placement> placements, int frameX = 2) {
    Standing standing;
    standing.pixelWidth = 204;
    standing.pixelHeight = 104;
    standing.frameX = frameX;
    standing.frameY = 2;
    standing.visible = {static_cast<std::int16_t>(frameX), 2, 200, 100};
    return {std::move(placements), standing};
  }
  Picture painted(cairo_surface_t* surface, const PanelContent& shown,
                  const std::vector<PixelRect>& pixels) {
    paintContent(surface, shown, pixels);
    return pictureOf(surface);
  }

  const Placement small{picture(20, 10), {30, 40, 20, 10}};
  const Placement moved{small.picture, {30, 50, 20, 10}};
  const Placement other{picture(20, 10, 1), {100, 10, 20, 10}};
};

TEST_F(PanelContentTest, TheSameContentHasNoChanges) {
  EXPECT_THAT(changesBetween(content({small, other}), content({small, other})), IsEmpty());
  EXPECT_THAT(changesBetween(content({}), content({}, 5)), IsEmpty());
}

TEST_F(PanelContentTest, OnlyWhatMovedHasChanged) {
  EXPECT_THAT(changesBetween(content({small, other}), content({moved, other})),
              ElementsAre(PixelRect{31, 41, 22, 12}, PixelRect{31, 51, 22, 12}));
  EXPECT_THAT(changesBetween(content({small}), content({small, other})),
              ElementsAre(PixelRect{101, 11, 22, 12}));
}

TEST_F(PanelContentTest, ChangesAreCutAtThePanelsEdges) {
  const Placement outside{small.picture, {-15, -5, 20, 10}};
  EXPECT_THAT(changesBetween(content({}), content({outside})), ElementsAre(PixelRect{2, 2, 6, 6}));
  const Placement farOut{small.picture, {300, 300, 20, 10}};
  EXPECT_THAT(changesBetween(content({}), content({farOut})), IsEmpty());
  const Placement atEnd{small.picture, {190, 95, 20, 10}};
  EXPECT_THAT(changesBetween(content({}), content({atEnd})),
              ElementsAre(PixelRect{191, 96, 11, 6}));
}

TEST_F(PanelContentTest, APanelThatLiesElsewhereInItsSurfaceHasChangedWhereItShowsSomething) {
  EXPECT_THAT(changesBetween(content({small}), content({small}, 3)),
              ElementsAre(PixelRect{31, 41, 22, 12}, PixelRect{32, 41, 22, 12}));
}

TEST_F(PanelContentTest, PaintingTheChangesComesToTheSameAsPaintingAll) {
  const CairoSurfacePtr kept = makePixels(204, 104);
  PanelContent before = content({});
  for (const PanelContent& next :
       {content({small, other}), content({moved, other}), content({moved}, 3),
        content({other, small, {moved.picture, {35.5, 44.5, 20, 10}}}), content({})}) {
    const Picture seen = painted(kept.get(), next, changesBetween(before, next));
    const CairoSurfacePtr fresh = makePixels(204, 104);
    EXPECT_EQ(seen, painted(fresh.get(), next, {{0, 0, 204, 104}}));
    before = next;
  }
  EXPECT_EQ(pictureOf(kept.get()).largestAlpha(), 0);
}

TEST_F(PanelContentTest, NothingIsPaintedBesideThePanelAndOverlapsAreBlended) {
  const CairoSurfacePtr surface = makePixels(204, 104);
  const PanelContent wide = content({{picture(300, 300), {-50, -50, 300, 300}}, small});
  const Picture seen = painted(surface.get(), wide, {{0, 0, 204, 104}});
  EXPECT_EQ(seen.bounds(), (Box{2, 2, 201, 101}));
  EXPECT_NEAR(seen.alpha(10, 10), 0.5, 0.01);
  EXPECT_NEAR(seen.alpha(40, 45), 0.75, 0.01);
}

}  // namespace
}  // namespace vellora
