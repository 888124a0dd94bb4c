#include <fstream>
#include <sstream>

#include <signal.h>

#include "base/files.h"
#include "e2e/neighbours.h"
#include "wayland/wayland_desk.h"

namespace vellora::e2e {
namespace {

// What the compositor itself does to captions.
class UnderACompositor : public WaylandDesk {
 protected:
  pid_t compositorsProcess() const {
    return sessionPiece(compositor->name() == "sway" ? "sway" : "kwin");
  }
  std::string saidByOverlay() const {
    std::ostringstream said;
    said << std::ifstream(folder / "overlay.log").rdbuf();
    return said.str();
  }
};

TEST_F(UnderACompositor, ThatHangsCaptionsAreThereAfterwards) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  keepSync();
  ASSERT_TRUE(waitFor([&] { return nowPlaying().has_value(); }));
  const pid_t process = compositorsProcess();
  kill(process, SIGSTOP);
  const double since = now();
  // The overlay goes on meanwhile: commands are taken away as they come.
  for (int i = 0; now() < since + 3; ++i) {
    send(MusicCommand(now() - 30, MusicCommand::Action::next, ""));
    EXPECT_TRUE(waitFor([&] { return !fileExists(exchange / commandFileName); })) << i;
  }
  kill(process, SIGCONT);
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
  EXPECT_TRUE(overlay->running());
}

TEST_F(UnderACompositor, ThatEndsTheOverlayEndsWithOneLine) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  kill(compositorsProcess(), SIGKILL);
  EXPECT_TRUE(waitFor([&] { return !overlay->running(); }));
  EXPECT_EQ(overlay->exitStatus(), 3);
  const std::string line = "Vellora: the display is gone, so the program ends.\n";
  EXPECT_TRUE(saidByOverlay().ends_with(line)) << saidByOverlay();
}

}  // namespace
}  // namespace vellora::e2e
