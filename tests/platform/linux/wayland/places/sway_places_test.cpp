// Where windows are on sway: what the accessibility room tells against what is on the screen.
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <sstream>
#include <string>

#include "platform/linux/glib/run_program.h"
#include "platform/linux/wayland/places/places_fixture.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

class SwayPlaces : public PlacesFixture {
 protected:
  ~SwayPlaces() override {
    program.reset();
    command("output HEADLESS-1 scale 1, workspace 1, layout splith, gaps inner current set 0");
  }
  static void command(const std::string& words) {
    EXPECT_EQ(runProgram({"swaymsg", words}).status, 0) << words;
  }
  ScreenPicture picture() override {
    const std::string file = folder / "screen.ppm";
    if (runProgram({"grim", "-t", "ppm", file}).status != 0) return {};
    const std::string bytes = readText(file);
    ScreenPicture result;
    char* end = nullptr;
    result.width = static_cast<int>(std::strtol(bytes.c_str() + 3, &end, 10));
    result.height = static_cast<int>(std::strtol(end, &end, 10));
    std::strtol(end, &end, 10);  // the brightest value
    result.pixels = bytes.substr(static_cast<std::size_t>(end + 1 - bytes.c_str()));
    return result;
  }
  // As the session wrote it down; 0: it did not.
  static pid_t swayProcess() {
    std::istringstream lines(readText(std::getenv("VELLORA_SESSION_PIDS")));
    std::string name;
    pid_t process = 0;
    while (lines >> name >> process) {
      if (name == "sway") return process;
    }
    return 0;
  }
  // The steps that every window goes through.
  void goThroughPlaces() {
    ASSERT_TRUE(eventuallyRight());
    command("border normal 4");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x == 17; }));
    command("border pixel 7, gaps inner current set 20");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x == 40; }));
    command("border normal 2, layout tabbed");
    EXPECT_TRUE(eventuallyRight());
    command("layout stacking");
    EXPECT_TRUE(eventuallyRight());
    command("fullscreen enable");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x == 13; }));
    command("fullscreen disable, floating enable, move position 300 200");
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x > 300; }));
    command("move position 101 57");  // of which sway says nothing
    EXPECT_TRUE(eventuallyRight([](const Rect& marker) { return marker.x < 200; }));
    command("resize set 600 500");
    EXPECT_TRUE(eventuallyRight());
  }

  TemporaryFolder folder;
};

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
