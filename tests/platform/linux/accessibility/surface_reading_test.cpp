// Readings of programs that do not know where their windows are.
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/accessibility/described_fixture.h"
#include "platform/linux/accessibility/view_explanation.h"

namespace vellora {
namespace {

class SurfaceReading : public DescribedFixture {
 protected:
  SurfaceReading() {
    window.clientArea.reset();
    placeAt({300, 200, 1000, 700});
  }
  void placeAt(const Rect& content) {
    window.surfaces = {{.content = content, .surface = std::nullopt}};
  }
  // The window system tells anew where the window is.
  void moveTo(const Rect& content) {
    placeAt(content);
    windows->bringToFront(window);
  }
  // A program that shows itself, its frame at the origin of what it tells.
  void beginPlain(const FakeProgram& plain) {
    PlayerDescription description;
    description.identifier = "plain";
    describe(description);
    program = plain;
    begin();
  }
};

TEST_F(SurfaceReading, APageStandsWhereItsWindowDoes) {
  makePage(5);
  begin();
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.window, (Rect{300, 200, 1000, 700}));
  EXPECT_EQ(layout.viewport, (Rect{500, 350, 400, 300}));
  EXPECT_EQ(layout.rows.at(2).frame, (Rect{510, 550, 300, 40}));
}

TEST_F(SurfaceReading, AWindowThatMovesTakesItsPageAlongWithoutAQuestionMore) {
  makePage(5);
  begin();
  readPage();
  const int asked = questions();
  moveTo({310, 180, 1000, 700});
  EXPECT_LE(questions(), asked);
  EXPECT_EQ(readPage().rows.at(2).frame, (Rect{520, 530, 300, 40}));
  scroll(30);
  EXPECT_EQ(readPage().rows.at(2).frame, (Rect{520, 500, 300, 40}));
}

TEST_F(SurfaceReading, AWindowThatCannotBeSeenHasNoPlace) {
  makePage(2);
  window.surfaces.emplace();
  begin();
  EXPECT_FALSE(read(patient).has_value());
  moveTo({300, 200, 1000, 700});
  EXPECT_EQ(readPage().rows.size(), 2U);
}

TEST_F(SurfaceReading, AProgramThatShowsItselfStandsWhereItsWindowDoes) {
  beginPlain(programWithRows(3));
  EXPECT_EQ(readRows(3).rows.at(2).frame, (Rect{310, 220, 300, 20}));
  moveTo({0, -40, 1000, 700});
  const MusicLayout moved = readRows(3);
  EXPECT_EQ(moved.rows.at(2).frame, (Rect{10, -20, 300, 20}));
  EXPECT_EQ(moved.window, (Rect{0, -40, 1000, 700}));
}

// As GTK 3 tells of a window with a header bar and a shadow.
TEST_F(SurfaceReading, AShadowInTheSurfaceIsLeftOutOfTheReckoning) {
  FakeProgram shadowed = programWithRows(0);
  shadowed.objects[1].extents = Extents{0, 0, 1052, 752};
  add(shadowed, 1, {.role = FakeRole::panel, .extents = Extents{26, 23, 1000, 47}});
  const std::size_t inside =
      add(shadowed, 1, {.role = FakeRole::panel, .extents = Extents{26, 70, 1000, 653}});
  add(shadowed, inside, row("only", 100));
  beginPlain(shadowed);
  const MusicLayout layout = readRows(1);
  EXPECT_EQ(layout.rows.at(0).frame, (Rect{284, 277, 300, 20}));
  EXPECT_EQ(layout.window, (Rect{300, 200, 1000, 700}));
}

// As Chromium does: two panels of the frame's size around the window's content.
TEST_F(SurfaceReading, AShadowAroundAPageIsFoundBehindElementsAsLargeAsTheFrame) {
  makePage(3);
  object(frame).extents = Extents{0, 0, 1032, 742};
  object(frame).children.clear();
  const std::size_t outer =
      add(program, frame, {.role = FakeRole::panel, .extents = Extents{0, 0, 1032, 742}});
  add(program, outer, {.role = FakeRole::button, .extents = Extents{984, 10, 32, 40}});
  const std::size_t content =
      add(program, outer, {.role = FakeRole::panel, .extents = Extents{16, 10, 1000, 700}});
  object(content).children.push_back(document);
  begin();
  EXPECT_EQ(readPage().rows.at(1).frame, (Rect{594, 490, 300, 40}));
  EXPECT_EQ(readPage().rows.at(1).frame, (Rect{594, 490, 300, 40}));
  const WindowExplanation told = explainWindow(window, std::chrono::minutes(10));
  ASSERT_TRUE(told.frame);
  EXPECT_EQ(told.frame->frame, (Rect{300, 200, 1000, 700}));
  ASSERT_EQ(told.views.size(), 1U);
  ASSERT_EQ(told.views[0].rows.size(), 3U);
  EXPECT_EQ(told.views[0].rows[1].element.frame, (Rect{594, 490, 300, 40}));
}

}  // namespace
}  // namespace vellora
