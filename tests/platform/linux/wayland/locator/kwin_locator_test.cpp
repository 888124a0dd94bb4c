#include "platform/linux/wayland/locator/kwin_locator.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/wayland/locator/fake_kwin.h"
#include "platform/linux/wayland/locator/locator_fixture.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

class KWinLocatorTest : public LocatorFixture {
 protected:
  KWinLocatorTest() {
    g_setenv("XDG_RUNTIME_DIR", folder.path().c_str(), TRUE);
    start();
    locator = std::make_unique<KWinLocator>();
  }
  ~KWinLocatorTest() override {
    locator.reset();
    runLoopUntil([&] { return g_main_context_pending(nullptr) == FALSE; });
  }

  void start() { kwin = std::make_unique<FakeKWin>(bus.connect()); }
  bool eventuallyRun(int times) {
    return runLoopUntil([&] { return kwin->runs == times; });
  }
  static std::string report(int process) {
    return "[" + kwinWindow(process, "org.example.Player", true, "[1,2,3,4]", "[1,2,3,4]") + "]";
  }

  TemporaryFolder folder;
  const std::string name = "vellora-kwin-" + std::to_string(getpid());
  PrivateBus bus;
  std::unique_ptr<FakeKWin> kwin;
};

TEST_F(KWinLocatorTest, LoadsItsScriptFromAPrivateFileAndTakesItsReports) {
  ASSERT_TRUE(eventuallyRun(1));
  EXPECT_EQ(kwin->fileMode, 0600);
  EXPECT_TRUE(kwin->path.starts_with((folder.path() / (name + "-")).string())) << kwin->path;
  EXPECT_NE(kwin->script.find("callDBus(busName"), std::string::npos);
  EXPECT_FALSE(locator->isKnown());
  kwin->report(report(11));
  ASSERT_TRUE(eventuallyFront(11));
  kwin->report("[]");
  ASSERT_TRUE(runLoopUntil([&] { return !locator->frontWindow(); }));
  EXPECT_TRUE(locator->isKnown());
}

TEST_F(KWinLocatorTest, TakesTheScriptAwayAtTheEndAndItsFile) {
  ASSERT_TRUE(eventuallyRun(1));
  ASSERT_TRUE(runLoopUntil([&] { return kwin->loaded.size() == 1; }));
  // The farewell waits for an answer that only this loop could give: it is bounded.
  locator.reset();
  ASSERT_TRUE(runLoopUntil([&] { return kwin->loaded.empty(); }));
  EXPECT_TRUE(folder.names().empty());
}

TEST_F(KWinLocatorTest, WhatOthersReportIsNotListenedTo) {
  ASSERT_TRUE(eventuallyRun(1));
  kwin->report(report(11));
  ASSERT_TRUE(eventuallyFront(11));
  const auto stranger = bus.connect();
  int told = 0;
  locator->whenChanged([&] { ++told; });
  kwin->report(report(66), stranger.get());
  // What the stranger sent has been read by the time that a later message of KWin's is.
  g_dbus_connection_flush_sync(stranger.get(), nullptr, nullptr);
  kwin->report(report(12));
  ASSERT_TRUE(eventuallyFront(12));
  EXPECT_EQ(told, 1);
}

TEST_F(KWinLocatorTest, GarbageChangesNothing) {
  ASSERT_TRUE(eventuallyRun(1));
  kwin->report(report(11));
  ASSERT_TRUE(eventuallyFront(11));
  int told = 0;
  locator->whenChanged([&] { ++told; });
  kwin->report("{");
  kwin->report(std::string(2 * 1024 * 1024, ' ') + report(66));
  kwin->report(report(12));
  ASSERT_TRUE(eventuallyFront(12));
  EXPECT_EQ(told, 1);
}

TEST_F(KWinLocatorTest, AKWinThatIsGoneHasNothingInFrontAndGetsTheScriptAnewWhenItIsBack) {
  ASSERT_TRUE(eventuallyRun(1));
  kwin->report(report(11));
  ASSERT_TRUE(eventuallyFront(11));
  kwin.reset();
  ASSERT_TRUE(eventuallyUnknown());
  EXPECT_FALSE(locator->frontWindow().has_value());
  start();
  ASSERT_TRUE(eventuallyRun(1));
  kwin->report(report(12));
  EXPECT_TRUE(eventuallyFront(12));
}

TEST_F(KWinLocatorTest, AScriptThatKWinHasLostIsLoadedAgainWhilePlacesAreWatched) {
  ASSERT_TRUE(eventuallyRun(1));
  kwin->report(report(11));
  ASSERT_TRUE(eventuallyFront(11));
  kwin->loaded.clear();
  locator->setWatched(true);
  EXPECT_TRUE(eventuallyRun(2));
}

// As in KWin 5.27, when the script got the number of another one.
TEST_F(KWinLocatorTest, AScriptThatDoesNotReportIsStartedWithAllOthers) {
  ASSERT_TRUE(eventuallyRun(1));
  ASSERT_TRUE(runLoopUntil([&] { return kwin->starts == 1; }));
  EXPECT_EQ(kwin->loaded.size(), 1U);
  kwin->report(report(11));
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(KWinLocatorTest, AKWinThatHangsHasNothingInFrontUntilItAnswers) {
  ASSERT_TRUE(eventuallyRun(1));
  kwin->report(report(11));
  ASSERT_TRUE(eventuallyFront(11));
  locator->setWatched(true);
  kwin->answers = false;
  ASSERT_TRUE(eventuallyUnknown());
  locator->setWatched(false);
  kwin->answers = true;
  EXPECT_TRUE(eventuallyFront(11));
}

TEST_F(KWinLocatorTest, LoadingThatFailsIsTriedAgain) {
  kwin->takesScripts = false;
  ASSERT_TRUE(runLoopUntil([&] { return kwin->calls.size() >= 2; }));
  EXPECT_EQ(kwin->runs, 0);
  kwin->takesScripts = true;
  EXPECT_TRUE(eventuallyRun(1));
}

TEST(KWinScriptFileTest, WhatAKilledProcessLeftIsUnloadedBeforeAnythingIsLoaded) {
  const TemporaryFolder folder;
  const PrivateBus bus;  // which takes the variable away
  g_setenv("XDG_RUNTIME_DIR", folder.path().c_str(), TRUE);
  const pid_t gone = fork();
  if (gone == 0) _exit(0);
  waitpid(gone, nullptr, 0);
  const std::string left = "vellora-kwin-" + std::to_string(gone) + "-aB3dE6";
  const std::string alive = "vellora-kwin-" + std::to_string(getppid()) + "-aB3dE6.js";
  folder.write(left + ".js", "");
  folder.write(alive, "");
  folder.write("vellora-kwin-.js", "");
  folder.write("vellora-kwin-12x.js", "");
  FakeKWin kwin(bus.connect());
  KWinLocator locator;
  ASSERT_TRUE(runLoopUntil([&] { return kwin.runs == 1; }));
  ASSERT_FALSE(kwin.calls.empty());
  EXPECT_EQ(kwin.calls.front(), "unloadScript " + left);
  EXPECT_FALSE(folder.has(left + ".js"));
  EXPECT_TRUE(folder.has(alive));
  EXPECT_TRUE(folder.has("vellora-kwin-.js"));
  EXPECT_TRUE(folder.has("vellora-kwin-12x.js"));
}

}  // namespace
}  // namespace vellora
