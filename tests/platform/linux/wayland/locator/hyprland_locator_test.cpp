#include "platform/linux/wayland/locator/hyprland_locator.h"

#include <cstddef>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/wayland/locator/fake_hyprland.h"
#include "platform/linux/wayland/locator/hyprland_text.h"
#include "platform/linux/wayland/locator/locator_fixture.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

class HyprlandLocatorTest : public LocatorFixture {
 protected:
  void start() {
    compositor = std::make_unique<FakeHyprland>(folder.path());
    compositor->answers["j/monitors"] = "[" + hyprlandMonitor(0, "DP-1", 1) + "]";
    show(11);
  }
  void show(int process, int x = 22) {
    compositor->answers["j/clients"] = "[" +
                                       hyprlandClient({.process = process,
                                                       .address = "0xa",
                                                       .place = R"("at": [)" + std::to_string(x) +
                                                                R"(, 53], "size": [600, 400])"}) +
                                       "]";
    compositor->answers["j/activewindow"] = hyprlandClient({.process = process, .address = "0xa"});
  }
  void locate() { locator = std::make_unique<HyprlandLocator>(folder.path()); }

  TemporaryFolder folder;
  std::unique_ptr<FakeHyprland> compositor;
};

TEST_F(HyprlandLocatorTest, AsksAtTheStartAndAfterEachEvent) {
  start();
  locate();
  EXPECT_FALSE(locator->isKnown());
  ASSERT_TRUE(eventuallyFront(11));
  EXPECT_EQ(compositor->asked,
            std::vector<std::string>({"j/monitors", "j/clients", "j/activewindow"}));
  show(12);
  compositor->say("activewindowv2>>a\n");
  ASSERT_TRUE(eventuallyFront(12));
  EXPECT_EQ(compositor->asked.size(), 6U);
  EXPECT_EQ(compositor->listeners, 1);
}

TEST_F(HyprlandLocatorTest, AFloodOfEventsIsOneQuestionUnderWayAndOneAfterIt) {
  start();
  const std::string clients = compositor->answers["j/clients"];
  compositor->answers.erase("j/clients");
  locate();
  ASSERT_TRUE(runLoopUntil([&] { return compositor->asked.size() == 2; }));
  std::string events;
  for (int i = 0; i < 2000; ++i) events += "windowtitle>>a\n";
  compositor->say(events);
  int steps = 0;
  ASSERT_TRUE(runLoopUntil([&] { return ++steps > 200; }));
  EXPECT_EQ(compositor->asked.size(), 2U);
}

TEST_F(HyprlandLocatorTest, WhileWatchedAMoveIsSeenWithoutAnEvent) {
  start();
  locate();
  ASSERT_TRUE(eventuallyFront(11));
  locator->setWatched(true);
  show(11, 40);
  ASSERT_TRUE(runLoopUntil([&] { return locator->frontWindow()->content.x == 40; }));
  locator->setWatched(false);
  const std::size_t asked = compositor->asked.size();
  int steps = 0;
  ASSERT_TRUE(runLoopUntil([&] { return ++steps > 300; }));
  EXPECT_LE(compositor->asked.size(), asked + 3);
}

TEST_F(HyprlandLocatorTest, NothingIsInFrontOfACompositorThatIsGoneUntilItIsBack) {
  start();
  locate();
  ASSERT_TRUE(eventuallyFront(11));
  compositor.reset();
  ASSERT_TRUE(eventuallyUnknown());
  EXPECT_TRUE(locator->windows().empty());
  start();
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(HyprlandLocatorTest, GarbageEndsTheConnectionAndTheNextOneIsListenedTo) {
  start();
  locate();
  ASSERT_TRUE(eventuallyFront(11));
  for (const char* const garbage : {"unknown request", "", "[{", "{\"address\": 1}"}) {
    compositor->answers["j/clients"] = garbage;
    compositor->say("openwindow>>b,1,class,title\n");
    ASSERT_TRUE(eventuallyUnknown()) << garbage;
    show(11);
    ASSERT_TRUE(eventuallyFront(11)) << garbage;
  }
  EXPECT_EQ(compositor->listeners, 5);
}

TEST_F(HyprlandLocatorTest, AnAnswerWithoutEndIsGivenUp) {
  start();
  compositor->answers.erase("j/clients");
  locate();
  const std::string spaces(65536, ' ');
  std::size_t poured = 0;
  ASSERT_TRUE(runLoopUntil([&] {
    poured += compositor->pour(spaces);
    return compositor->listeners >= 2;
  }));
  EXPECT_LT(poured, std::size_t{8} * 1024 * 1024);
  EXPECT_FALSE(locator->isKnown());
}

TEST_F(HyprlandLocatorTest, SilenceLeavesNothingInFrontAndTheQuestionIsPutAnew) {
  start();
  locate();
  ASSERT_TRUE(eventuallyFront(11));
  compositor->answers.erase("j/monitors");
  compositor->say("workspacev2>>2,2\n");
  ASSERT_TRUE(eventuallyUnknown());
  EXPECT_FALSE(locator->frontWindow().has_value());
  compositor->answers["j/monitors"] = "[" + hyprlandMonitor(0, "DP-1", 1) + "]";
  EXPECT_TRUE(runLoopUntil([&] { return locator->isKnown(); }, 60));
}

// As X11 programs wrote it, in an encoding of their own.
TEST_F(HyprlandLocatorTest, ATitleThatIsNotUtf8HidesNoWindow) {
  start();
  std::string& clients = compositor->answers["j/clients"];
  clients.replace(clients.find("Lyrics"), 6, "caf\xe9");
  locate();
  EXPECT_TRUE(eventuallyFront(11));
}

}  // namespace
}  // namespace vellora
