#include "platform/linux/wayland/locator/i3_locator.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/wayland/locator/fake_i3.h"
#include "platform/linux/wayland/locator/i3_text.h"
#include "platform/linux/wayland/locator/locator_fixture.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

class I3LocatorTest : public LocatorFixture {
 protected:
  void start() {
    compositor = std::make_unique<FakeI3>(path);
    compositor->tree = i3OneWindow(11);
  }

  TemporaryFolder folder;
  const std::string path = folder / "ipc.sock";
  std::unique_ptr<FakeI3> compositor;
};

TEST_F(I3LocatorTest, AsksAtTheStartAndAfterEachEvent) {
  start();
  locator = std::make_unique<I3Locator>(path);
  EXPECT_FALSE(locator->isKnown());
  ASSERT_TRUE(eventuallyFront(11));
  int told = 0;
  locator->whenChanged([&] { ++told; });
  compositor->tree = i3OneWindow(12);
  compositor->sayEvent();
  ASSERT_TRUE(eventuallyFront(12));
  EXPECT_EQ(told, 1);
  EXPECT_EQ(compositor->treesAsked, 2);
  EXPECT_EQ(compositor->subscriptions,
            std::vector<std::string>(
                {R"(["window"])", R"(["workspace"])", R"(["output"])", R"(["shutdown"])"}));
}

TEST_F(I3LocatorTest, AFloodOfEventsIsOneQuestionUnderWayAndOneAfterIt) {
  start();
  compositor->answer = [] { return std::string(); };
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(runLoopUntil([&] { return compositor->treesAsked == 1; }));
  int steps = 0;
  std::string events;
  for (int i = 0; i < 2000; ++i) events += encodeI3Message(0x80000003U, "{}");
  compositor->say(events);
  ASSERT_TRUE(runLoopUntil([&] { return ++steps > 200; }));
  EXPECT_EQ(compositor->treesAsked, 1);
  compositor->answer = [&] { return encodeI3Message(I3Message::getTree, compositor->tree); };
  compositor->say(encodeI3Message(I3Message::getTree, i3OneWindow(10)));
  ASSERT_TRUE(eventuallyFront(11));
  EXPECT_EQ(compositor->treesAsked, 2);
}

TEST_F(I3LocatorTest, AListenerIsNotToldOfWhatHasNotChanged) {
  start();
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(eventuallyFront(11));
  int told = 0;
  locator->whenChanged([&] { ++told; });
  compositor->sayEvent();
  ASSERT_TRUE(runLoopUntil([&] { return compositor->treesAsked == 2; }));
  compositor->sayEvent();
  ASSERT_TRUE(runLoopUntil([&] { return compositor->treesAsked == 3; }));
  EXPECT_EQ(told, 0);
}

// sway sends no event for a window that is moved.
TEST_F(I3LocatorTest, WhileWatchedAMoveIsSeenWithoutAnEvent) {
  start();
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(eventuallyFront(11));
  locator->setWatched(true);
  compositor->tree = i3OneWindow(11, 40);
  ASSERT_TRUE(runLoopUntil([&] { return locator->frontWindow()->content.x == 42; }));
  locator->setWatched(false);
  const int asked = compositor->treesAsked;
  int steps = 0;
  ASSERT_TRUE(runLoopUntil([&] { return ++steps > 300; }));
  EXPECT_LE(compositor->treesAsked, asked + 1);
}

TEST_F(I3LocatorTest, NothingIsInFrontOfACompositorThatIsGoneUntilItIsBack) {
  start();
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(eventuallyFront(11));
  compositor.reset();
  ASSERT_TRUE(eventuallyUnknown());
  EXPECT_FALSE(locator->frontWindow().has_value());
  EXPECT_TRUE(locator->windows().empty());
  start();
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(I3LocatorTest, ACompositorThatComesLaterIsFound) {
  locator = std::make_unique<I3Locator>(path);
  EXPECT_FALSE(locator->isKnown());
  start();
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(I3LocatorTest, GarbageEndsTheConnectionAndTheNextOneIsListenedTo) {
  const std::string garbages[] = {
      "GET / HTTP/1.1\r\n\r\n",
      std::string("i3-ipc\xff\xff\xff\xff\x04\0\0\0", 14),
      encodeI3Message(I3Message::getTree, "{"),
      encodeI3Message(I3Message::getTree, R"({"type":"con"})"),
      std::string(100000, 'x'),
  };
  start();
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(eventuallyFront(11));
  int made = compositor->connectionsMade;
  for (const std::string& garbage : garbages) {
    compositor->say(garbage);
    ASSERT_TRUE(eventuallyUnknown());
    ASSERT_TRUE(eventuallyFront(11));
    EXPECT_EQ(compositor->connectionsMade, ++made);
  }
}

TEST_F(I3LocatorTest, AnAnswerThatIsCutShortIsWaitedForAndThenMissed) {
  start();
  const std::string whole = encodeI3Message(I3Message::getTree, i3OneWindow(11));
  compositor->answer = [&] { return whole.substr(0, whole.size() / 2); };
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(runLoopUntil([&] { return compositor->treesAsked == 1; }));
  EXPECT_FALSE(locator->isKnown());
  compositor->say(whole.substr(whole.size() / 2));
  ASSERT_TRUE(eventuallyFront(11));
  compositor->sayEvent();
  ASSERT_TRUE(runLoopUntil([&] { return compositor->treesAsked == 2; }));
  compositor->answer = [&] { return whole; };
  compositor->hangUp();
  ASSERT_TRUE(eventuallyUnknown());
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(I3LocatorTest, SilenceLeavesNothingInFrontUntilTheAnswerComes) {
  start();
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(eventuallyFront(11));
  compositor->answer = [] { return std::string(); };
  compositor->sayEvent();
  ASSERT_TRUE(runLoopUntil([&] { return compositor->treesAsked == 2; }));
  EXPECT_TRUE(locator->frontWindow().has_value());
  ASSERT_TRUE(eventuallyUnknown());
  EXPECT_FALSE(locator->frontWindow().has_value());
  EXPECT_EQ(compositor->connectionsMade, 1);
  compositor->say(encodeI3Message(I3Message::getTree, compositor->tree));
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(I3LocatorTest, AfterALongSilenceTheQuestionIsPutAnewOnAnotherConnection) {
  start();
  compositor->answer = [&] {
    compositor->answer = [&] { return encodeI3Message(I3Message::getTree, compositor->tree); };
    return std::string();
  };
  locator = std::make_unique<I3Locator>(path);
  ASSERT_TRUE(runLoopUntil([&] { return locator->isKnown(); }, 60));
  EXPECT_EQ(compositor->connectionsMade, 2);
}

TEST_F(I3LocatorTest, APeerThatClosesAtOnceIsNotConnectedToWithoutEnd) {
  start();
  compositor->answer = [&] {
    compositor->hangUp();
    return std::string();
  };
  locator = std::make_unique<I3Locator>(path);
  const gint64 begin = g_get_monotonic_time();
  ASSERT_TRUE(runLoopUntil([&] { return compositor->connectionsMade == 4; }));
  // 0.1, 0.2 and 0.4 s between them.
  EXPECT_GE(g_get_monotonic_time() - begin, 690000);
}

// As X11 programs wrote it, in an encoding of their own.
TEST_F(I3LocatorTest, ATitleThatIsNotUtf8HidesNoWindow) {
  start();
  const std::string name = R"("name":"1")";
  compositor->tree.replace(compositor->tree.find(name), name.size(), "\"name\":\"caf\xe9\"");
  locator = std::make_unique<I3Locator>(path);
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(I3LocatorTest, AListenerMayPutAnotherInItsPlace) {
  start();
  locator = std::make_unique<I3Locator>(path);
  bool isSecondTold = false;
  locator->whenChanged([&] { locator->whenChanged([&] { isSecondTold = true; }); });
  ASSERT_TRUE(eventuallyFront(11));
  compositor->hangUp();
  EXPECT_TRUE(runLoopUntil([&] { return isSecondTold; }));
}

}  // namespace
}  // namespace vellora
