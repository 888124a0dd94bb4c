#include <cstdlib>
#include <fstream>
#include <sstream>

#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

// Mutter lets no program draw above others or ask where they are: the player and the overlay run
// under its X server. Nor does it let a test take a picture; but of X11's windows each has its own.
class StackedWindows final : public witness::Screen {
 public:
  StackedWindows(std::string player, std::unique_ptr<Screen> screen)
      : player_(std::move(player)), screen_(std::move(screen)) {}

  // The player's window with the panel, where there is one, laid over it.
  std::optional<witness::Picture> whole() const override {
    std::optional<witness::Picture> stacked = screen_->windowAlone(player_);
    if (!stacked) return std::nullopt;
    if (const auto panel = screen_->windowAlone("Vellora")) {
      for (std::size_t i = 0; i < stacked->pixels.size(); ++i) {
        if (panel->pixels[i] != 0) stacked->pixels[i] = panel->pixels[i];
      }
    }
    return stacked;
  }
  std::optional<witness::WindowPicture> windowAlone(const std::string& name) const override {
    return screen_->windowAlone(name);
  }

 private:
  std::string player_;
  std::unique_ptr<Screen> screen_;
};

class OnMutter : public Desk {
 protected:
  std::unique_ptr<witness::Screen> openScreen() override {
    return std::make_unique<StackedWindows>(windowClass(), witness::openXScreen());
  }
  std::string saidByOverlay() const {
    std::ostringstream said;
    said << std::ifstream(folder / "overlay.log").rdbuf();
    return said.str();
  }
  static constexpr const char* xChosen = "Vellora: using X11";
};

TEST_F(OnMutter, CaptionsStandOverAPlayerUnderXwayland) {
  environment["GDK_BACKEND"] = "x11";
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "1", "--paused", "--position", "12"}));
  keepSnapshot(snapshotOfPlayer());
  startOverlay();
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
  EXPECT_NE(saidByOverlay().find(xChosen), std::string::npos) << saidByOverlay();
}

TEST_F(OnMutter, APlayerOfWaylandIsWaitedForAndTheReasonIsSaid) {
  environment["GDK_BACKEND"] = "wayland";
  player = std::make_unique<Process>(
      std::vector<std::string>{VELLORA_DEMO_PLAYER, "--song", "1", "--paused", "--position", "12"},
      folder / "player.log", environment);
  ASSERT_TRUE(waitFor([&] { return seenPlayer() && !seenPlayer()->rows.empty(); }));
  keepSnapshot(snapshotOfPlayer());
  startOverlay();
  EXPECT_TRUE(waitFor([&] { return statusIs("Ready — bring Music to the front"); }));
  EXPECT_NE(saidByOverlay().find(xChosen), std::string::npos) << saidByOverlay();
}

// Somebody who has KDE's name in a session of another compositor, for its themes.
TEST_F(OnMutter, ThePlayersToolAsksTheXServerAsTheOverlayDoes) {
  environment["GDK_BACKEND"] = "x11";
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "1", "--paused", "--position", "12"}));
  ::setenv("XDG_CURRENT_DESKTOP", "KDE", 1);
  std::string told;
  EXPECT_TRUE(waitFor([&] {
    told = outputOf({VELLORA_PLAYERS_PROGRAM, "show"});
    return told.find("Window: class \"com.apple.Music\", process " +
                     std::to_string(player->pid())) != told.npos;
  })) << told;
}

}  // namespace
}  // namespace vellora::e2e
