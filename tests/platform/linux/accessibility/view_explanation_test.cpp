#include "platform/linux/accessibility/view_explanation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/described_fixture.h"

namespace vellora {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class ViewExplanation : public DescribedFixture {
 protected:
  WindowExplanation explain() { return explainWindow(window, std::chrono::minutes(10)); }
};

TEST_F(ViewExplanation, WhatWasFoundIsToldStepByStep) {
  makePage(2);
  const std::size_t other =
      add(program, document, {.role = FakeRole::landmark, .name = "Navigation"});
  object(rows[1]).name.clear();
  begin();
  const WindowExplanation told = explain();
  EXPECT_THAT(told.whyNot, IsEmpty());
  ASSERT_TRUE(told.frame);
  EXPECT_EQ(told.frame->name, "Browser");
  EXPECT_EQ(told.frame->frame, (Rect{100, 50, 1000, 700}));
  EXPECT_EQ(told.page, "https://music.example/song");
  EXPECT_EQ(told.played, "Song \u2014 One, Two");
  ASSERT_EQ(told.views.size(), 1U);
  const ExplainedView& shown = told.views[0];
  EXPECT_THAT(shown.whyNot, IsEmpty());
  EXPECT_EQ(shown.viewport, (Rect{300, 200, 400, 300}));
  ASSERT_EQ(shown.candidates.size(), 2U);
  EXPECT_EQ(shown.candidates[0].element.name, "Lyrics");
  EXPECT_THAT(shown.candidates[0].whyNot, IsEmpty());
  EXPECT_EQ(shown.candidates[1].element.name, object(other).name);
  EXPECT_EQ(shown.candidates[1].whyNot, "its name is another");
  ASSERT_EQ(shown.rows.size(), 2U);
  EXPECT_EQ(shown.rows[0].element.text, "line 0");
  EXPECT_EQ(shown.rows[0].element.frame, (Rect{310, 200, 300, 40}));
  EXPECT_EQ(shown.rows[1].whyNot, "it has no text");
}

TEST_F(ViewExplanation, ElementsWithTextsAreListedForADescription) {
  makePage(1);
  const std::size_t outer = add(program, document, {.role = FakeRole::section});
  object(outer).classes = "song-lines";
  const std::size_t inner = add(program, outer, {.role = FakeRole::section});
  object(inner).classes = "song-line";
  object(inner).text = "bare words";
  begin();
  const auto elements = explain().elements;
  const auto found = std::ranges::find(elements, "song-line", &ExplainedElement::classes);
  ASSERT_NE(found, elements.end());
  EXPECT_EQ(found->text, "bare words");
  EXPECT_EQ(found->depth, 2);
  EXPECT_EQ(std::prev(found)->classes, "song-lines");
  EXPECT_EQ(std::prev(found)->text, "bare words");  // with what is in it
}

TEST_F(ViewExplanation, APageThatPlaysNothingIsNotLookedThrough) {
  makePage(1);
  program.media.clear();
  begin();
  const WindowExplanation told = explain();
  EXPECT_THAT(told.whyNot, HasSubstr("No media player"));
  EXPECT_THAT(told.elements, IsEmpty());
  EXPECT_EQ(player->counts().matches, 0);
}

TEST_F(ViewExplanation, APageWithAnotherAddressIsNamed) {
  makePage(1);
  object(document).address = "about:blank";
  begin();
  const WindowExplanation told = explain();
  ASSERT_EQ(told.views.size(), 1U);
  EXPECT_EQ(told.views[0].whyNot, "The page has another address.");
}

TEST_F(ViewExplanation, AProgramThatIsNotOnTheBusIsToStartAgain) {
  makePage(1);
  begin();
  window.process = 1;
  EXPECT_THAT(explain().whyNot, HasSubstr("not on the accessibility bus"));
}

}  // namespace

}  // namespace vellora
