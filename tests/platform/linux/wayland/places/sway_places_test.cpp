// Where windows are on sway: what the accessibility room tells against what is on the screen.
#include "platform/linux/wayland/places/sway_places.h"

#include <csignal>
#include <string>

#include "platform/linux/glib/run_program.h"

namespace vellora {
namespace {

TEST_F(SwayPlaces, OfGtk3WithoutAShadow) {
  start(gtk3(false));
  goThroughPlaces();
}

TEST_F(SwayPlaces, OfGtk3WithAShadow) {
  start(gtk3(true));
  goThroughPlaces();
}

TEST_F(SwayPlaces, OfGtk4WithAShadow) {
  start(gtk4(true));
  goThroughPlaces();
}

TEST_F(SwayPlaces, OfQt5) {
  start(qt());
  goThroughPlaces();
}

TEST_F(SwayPlaces, OfAProgramUnderXwayland) {
  start(gtk3(false), true);
  goThroughPlaces();
}

TEST_F(SwayPlaces, OfAWindowWithAShadowOnOutputsOfOtherScales) {
  start(gtk3(true));
  command("floating enable, move position 100 60");
  for (const double factor : {2.0, 1.5}) {
    command("output HEADLESS-1 scale " + std::to_string(factor));
    scale = factor;
    EXPECT_TRUE(eventuallyRight()) << factor;
  }
}

// SIGSTOP is the whole desktop's hang.
TEST_F(SwayPlaces, ThereIsNothingInFrontOfASwayThatHangsUntilItGoesOn) {
  start(gtk3(false));
  const pid_t sway = swayProcess();
  ASSERT_GT(sway, 0);
  kill(sway, SIGSTOP);
  EXPECT_TRUE(eventually([this] { return front() == 0; }));
  kill(sway, SIGCONT);
  EXPECT_TRUE(eventually([this] { return front() == program->pid(); }));
}

TEST_F(SwayPlaces, ThePlayersToolFindsTheWindowInFront) {
  start(gtk3(true));
  const Outcome outcome = runProgram({VELLORA_PLAYERS_PROGRAM, "show"});
  EXPECT_NE(outcome.output.find("Window: application \"org.example.Placed\", process " +
                                std::to_string(program->pid()) + "\n"),
            std::string::npos)
      << outcome.output << outcome.errors;
  command("workspace 2");
  EXPECT_NE(runProgram({VELLORA_PLAYERS_PROGRAM, "show"}).errors.find("no window is in front"),
            std::string::npos);
}

TEST_F(SwayPlaces, ThereIsNothingInFrontOnAnEmptyWorkspace) {
  start(gtk3(false));
  command("workspace 2");
  EXPECT_TRUE(eventually([this] { return front() == 0; }));
  command("workspace 1");
  EXPECT_TRUE(eventually([this] { return front() == program->pid(); }));
}

}  // namespace
}  // namespace vellora
