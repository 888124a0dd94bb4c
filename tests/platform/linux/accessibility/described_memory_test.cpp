#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/described_fixture.h"

namespace vellora {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Gt;
using testing::Lt;

using DescribedMemoryTest = DescribedFixture;

// Elements by the hundred that could be the view by their role, before the one that is.
TEST_F(DescribedMemoryTest, WhatIsSomethingElseIsSeldomAskedAgain) {
  makePage(3);
  PlayerDescription classed = labelled();
  classed.lyrics->view.roles = {FakeRole::section};
  classed.lyrics->view.names = {};
  classed.lyrics->view.classes = {"lyrics"};
  describe(classed);
  for (int i = 0; i < 300; ++i) add(program, document, {.role = FakeRole::section});
  const std::size_t made = add(program, document, {.role = FakeRole::section});
  object(made) = object(view);
  object(made).role = FakeRole::section;
  object(made).classes = "lyrics";
  remember(std::chrono::milliseconds(200));
  begin();
  EXPECT_EQ(readTexts().size(), 3U);
  EXPECT_GT(player->counts().all, 300);
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));  // now the view is looked for anew
  EXPECT_THAT(questions(), AllOf(Gt(10), Lt(60)));
}

TEST_F(DescribedMemoryTest, ARowThatGetsItsTextLaterIsSeenThen) {
  makePage(3);
  for (const std::size_t one : rows) object(one).name = "";
  remember(std::chrono::milliseconds(200));
  begin();
  EXPECT_EQ(readTexts().size(), 0U);
  for (const std::size_t one : rows) change(one, [](FakeAccessible& it) { it.name = "late"; });
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // texts are asked again now
  EXPECT_THAT(readTexts(), ElementsAre("late", "late", "late"));
}

TEST_F(DescribedMemoryTest, WhatIsWithinARowIsAskedAgainToo) {
  makePage(1);
  object(rows[0]).name = "";
  const std::size_t inner = add(program, rows[0], {.role = FakeRole::text, .name = "before"});
  remember(std::chrono::milliseconds(200));
  begin();
  EXPECT_THAT(readTexts(), ElementsAre("before"));
  change(inner, [](FakeAccessible& it) { it.name = "after"; });
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));  // now the view is looked for anew
  EXPECT_THAT(readTexts(), ElementsAre("after"));
}

TEST_F(DescribedMemoryTest, WhereNoViewIsFollowedEachElementIsAskedAnewEarly) {
  makePage(2);
  object(view).name = "";
  remember(std::chrono::milliseconds(200));
  begin();
  EXPECT_EQ(readTexts().size(), 0U);
  change(view, [](FakeAccessible& it) { it.name = "Lyrics"; });
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_THAT(readTexts(), ElementsAre("line 0", "line 1"));
}

TEST_F(DescribedMemoryTest, AnElementThatBecomesTheViewIsSeenInTheEnd) {
  makePage(2);
  const std::size_t other = add(program, document, {.role = FakeRole::landmark, .name = "News"});
  object(other).extents = Extents{300, 200, 400, 300};
  add(program, other, pageRow("first", 200));
  std::swap(object(document).children[1], object(document).children.back());
  remember(std::chrono::milliseconds(5));
  begin();
  EXPECT_THAT(readTexts(), ElementsAre("line 0", "line 1"));
  change(other, [](FakeAccessible& it) { it.name = "Lyrics"; });
  EXPECT_TRUE(eventually([&] { return readTexts() == std::vector<std::string>{"first"}; }));
}

}  // namespace

}  // namespace vellora
