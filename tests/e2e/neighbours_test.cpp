#include "e2e/neighbours.h"

#include <sstream>

#include <signal.h>

#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

// What the overlay does when what stands around it goes, hangs or comes back. Figures are printed:
// docs/reliability.md has them.
class Neighbours : public Desk {
 protected:
  static constexpr const char* inBackground = "Ready — bring Music to the front";

  void follow() {
    ASSERT_NO_FATAL_FAILURE(startSong());
    keepSnapshot(snapshotOfPlayer());
    keepSync();
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
  }
  void startSong() { startPlayer({"--song", "1", "--paused", "--position", "12"}); }

  // Waits for what a person is to see, and tells how long that took from now on.
  void expectSoon(const std::string& sight, const std::function<bool()>& condition) {
    const double begun = now();
    ASSERT_TRUE(waitFor(condition)) << sight;
    std::cout << sight << ": " << now() - begun << " s\n";
  }
  void expectCaptions() {
    expectSoon("captions under their rows", [&] { return following() && captionsRight(); });
  }
  std::string said() const {
    std::ostringstream text;
    text << std::ifstream(folder / "overlay.log").rdbuf();
    return text.str();
  }
};

TEST_F(Neighbours, TheDisplayGoes) {
  ASSERT_NO_FATAL_FAILURE(follow());
  kill(sessionPiece("xvfb"), SIGKILL);
  expectSoon("the overlay has ended", [&] { return !overlay->running(); });
  EXPECT_EQ(overlay->exitStatus(), 3);
  EXPECT_TRUE(said().ends_with("Vellora: the display is gone, so the program ends.\n")) << said();
}

}  // namespace
}  // namespace vellora::e2e
