#include <random>

#include "controller/controller_fixture.h"

namespace vellora {
namespace {

// Random sequences of what can happen to the controller, in an order that repeats with its seed.
class RandomWorldsTest : public ControllerTest, public testing::WithParamInterface<unsigned> {
 protected:
  RandomWorldsTest() { controller->applicationDidFinishLaunching(); }

  int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }

  void step() {
    switch (pick(30)) {
      case 0:
        return writeSnapshot(pick(8));
      case 1:
        return writeSnapshot(0, pick(4) != 0);
      case 2:
        return remove("lyrics.json");
      case 3:
        return writeSync(pick(30));
      case 4:
        return remove("sync.json");
      case 5:
        return writeCommand(pick(25));
      case 6:
        return bringMusicToFront();
      case 7:
        return bringToFront("org.example.Editor");
      case 8:
        platform.workspace->frontmost = nullptr;
        return;
      case 9:
        platform.accessibility->trusted = pick(3) != 0;
        return;
      case 10:
        return openLyrics();
      case 11:
        platform.accessibility->applications.clear();
        return;
      case 12:
        return platform.clock->advance(pick(200) / 10.0);
      case 13: {  // the player with its lyrics, and a snapshot that is new
        platform.accessibility->trusted = true;
        bringMusicToFront();
        openLyrics();
        return writeSnapshot();
      }
      default:
        break;
    }
    switch (pick(3)) {
      case 0:
        platform.app.runBackground();
        return;
      case 1:
        platform.app.runMain();
        return;
      default:
        platform.clock->advance(0.12);
        return platform.app.fireTimers();
    }
  }
  void remove(std::string_view name) { std::filesystem::remove(folder / name); }

  std::size_t readingsInFlight() const {
    return platform.app.backgroundWaiting() + platform.app.mainWaiting();
  }
  bool musicInFront() const {
    return platform.workspace->frontmost &&
           platform.workspace->frontmost->identifier == "com.apple.Music";
  }

  std::mt19937 random{GetParam()};
};

TEST_P(RandomWorldsTest, NeverTwoReadingsNeverAShownPanelWithoutReasonNeverAnEarlyEnd) {
  platform.accessibility->onRequestTrust = [this] {
    EXPECT_FALSE(platform.accessibility->trusted);
  };
  std::size_t readings = 0;
  std::size_t shows = 0;
  for (int i = 0; i < 2000; ++i) {
    const int terminations = platform.app.terminations;
    const bool visible = panelVisible();
    const double lastFresh = controller->lastFresh;
    step();

    // One reading at most, and the flag says whether there is one.
    EXPECT_LE(readingsInFlight(), 1u);
    EXPECT_EQ(controller->scanning, readingsInFlight() == 1);
    // The panel comes into sight only over the player, and only with captions.
    if (panelVisible() && !visible) {
      ++shows;
      EXPECT_TRUE(musicInFront());
      EXPECT_FALSE(controller->canvas.captions().empty());
      EXPECT_EQ(statusFile(), StatusFiles::oneRow);
    }
    // The end comes only from age, and never while Tessaly asks for service.
    if (platform.app.terminations > terminations) {
      EXPECT_FALSE(controller->syncRequested());
      EXPECT_GT(now() - lastFresh, 15.0);
      EXPECT_EQ(statusFile(), StatusFiles::stopped);
    }
    // A recorded line is in the file and in the tooltip.
    EXPECT_EQ(platform.statusItem->toolTip, controller->statusMessage);
    readings = platform.app.queues[0]->accepted;
    if (HasFailure()) FAIL() << "step " << i;
  }
  // The walk went everywhere.
  EXPECT_GT(readings, 10u);
  EXPECT_GT(shows, 0u);
  EXPECT_GT(platform.app.terminations, 0);
  EXPECT_GT(platform.scripting->requests.size(), 10u);
  EXPECT_EQ(count("requestTrust"), 1u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWorldsTest, testing::Range(1u, 7u));

}  // namespace
}  // namespace vellora
