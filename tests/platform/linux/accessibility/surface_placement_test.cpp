#include "platform/linux/accessibility/surface_placement.h"

#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/accessibility/content_placement.h"

namespace vellora {
namespace {

using Places = std::vector<SurfacePlace>;

constexpr AccessibleExtents marker{13, 92, 120, 60};

std::optional<SurfacePlacement> find(const AccessibleExtents& frame, const Places& places) {
  return SurfacePlacement::find(frame, places);
}

Places one(const Rect& content, std::optional<Rect> surface = std::nullopt) {
  return {{.content = content, .surface = surface}};
}

// The numbers are those of the toolkits on sway 1.7 and KWin 5.27, with where their windows were.
TEST(SurfacePlacementTest, AFrameOfTheContentsSizeBeginsWhereTheContentDoes) {
  const auto gtk4 = find({0, 0, 400, 300}, one({300, 200, 400, 300}));
  ASSERT_TRUE(gtk4.has_value());
  EXPECT_FALSE(gtk4->lacksInset());
  EXPECT_EQ(gtk4->place(rectOf({13, 91, 120, 60})), Rect({313, 291, 120, 60}));
  EXPECT_EQ(gtk4->window(), Rect({300, 200, 400, 300}));
}

TEST(SurfacePlacementTest, FirefoxTellsHowFarItsWindowIsInTheSurface) {
  const auto firefox = find({26, 23, 900, 600}, one({200, 100, 900, 600}));
  ASSERT_TRUE(firefox.has_value());
  EXPECT_FALSE(firefox->lacksInset());
  EXPECT_EQ(firefox->place(rectOf({39, 155, 120, 60})), Rect({213, 232, 120, 60}));
}

TEST(SurfacePlacementTest, AFrameOfTheSurfacesSizeBeginsWhereTheSurfaceDoes) {
  const auto gtk3 = find({0, 0, 452, 399}, one({440, 226, 400, 347}, Rect{414, 203, 452, 399}));
  ASSERT_TRUE(gtk3.has_value());
  EXPECT_FALSE(gtk3->lacksInset());
  EXPECT_EQ(gtk3->place(rectOf({39, 115, 120, 60})), Rect({453, 318, 120, 60}));
}

TEST(SurfacePlacementTest, TheElementsInTheFrameShowHowBroadItsShadowIs) {
  auto gtk3 = find({0, 0, 452, 399}, one({300, 200, 400, 347}));
  ASSERT_TRUE(gtk3 && gtk3->lacksInset());
  EXPECT_FALSE(gtk3->takeInset({{26, 23, 400, 47}}));
  EXPECT_TRUE(gtk3->takeInset({{26, 23, 400, 47},
                               {INT32_MIN, INT32_MIN, 1, 1},  // hidden
                               {0, 0, 0, 0},
                               {26, 70, 400, 300}}));
  EXPECT_FALSE(gtk3->lacksInset());
  EXPECT_EQ(gtk3->place(rectOf({39, 115, 120, 60})), Rect({313, 292, 120, 60}));
}

TEST(SurfacePlacementTest, UntilThenTheShadowIsAsBroadAtOppositeSides) {
  const auto chromium = find({0, 0, 1296, 791}, one({2, 27, 1276, 771}));
  ASSERT_TRUE(chromium && chromium->lacksInset());
  EXPECT_EQ(chromium->place(rectOf({23, 203, 120, 60})), Rect({15, 220, 120, 60}));
}

TEST(SurfacePlacementTest, OfSeveralWindowsTheOneOfTheFramesSizeIsMeant) {
  const Places places{{.content = {0, 0, 300, 200}, .surface = std::nullopt},
                      {.content = {500, 100, 400, 300}, .surface = std::nullopt},
                      {.content = {700, 300, 400, 300}, .surface = std::nullopt}};
  const auto found = find({0, 0, 400, 300}, places);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->window(), places[1].content);
  EXPECT_FALSE(find({0, 0, 2000, 1500}, places).has_value());
}

TEST(SurfacePlacementTest, TheOnlyWindowIsMeantAlsoWhileItIsResized) {
  const auto smaller = find({0, 0, 380, 280}, one({300, 200, 400, 300}));
  ASSERT_TRUE(smaller.has_value());
  EXPECT_EQ(smaller->place(rectOf(marker)), Rect({313, 292, 120, 60}));
}

TEST(SurfacePlacementTest, WithoutAWindowInSightThereIsNoPlace) {
  EXPECT_FALSE(find({0, 0, 400, 300}, {}).has_value());
}

// Chromium on an output of scale 2: the window in points, the page in pixels.
TEST(SurfacePlacementTest, APageInPixelsIsPlacedInPoints) {
  PlayerWindow window;
  window.scale = 2;
  window.surfaces = one({100, 60, 600, 400});
  const AccessibleExtents frame{0, 0, 632, 442};
  auto surface = find(frame, *window.surfaces);
  ASSERT_TRUE(surface && surface->takeInset({{16, 10, 600, 400}}));
  const ContentPlacement placement(frame, AccessibleExtents{32, 312, 1200, 508}, window, surface);
  EXPECT_EQ(placement.place({58, 406, 240, 120}), Rect({113, 253, 120, 60}));
  EXPECT_EQ(placement.window(), Rect({100, 60, 600, 400}));
}

}  // namespace
}  // namespace vellora
