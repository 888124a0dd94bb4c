#pragma once

#include <cstddef>
#include <cstdlib>
#include <sstream>
#include <string>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/glib/run_program.h"
#include "platform/linux/wayland/places/places_fixture.h"
#include "support/temporary_folder.h"

namespace vellora {

// A window on sway, which the test moves about by its IPC and of which grim takes pictures.
class SwayPlaces : public PlacesFixture {
 protected:
  ~SwayPlaces() override {
    program.reset();
    // Where the window still floats, its workspace has no layout to be chosen.
    EXPECT_TRUE(runLoopUntil([] {
      return accepts(
          "output HEADLESS-1 scale 1, workspace 1, layout splith, gaps inner current set 0");
    }));
  }
  static bool accepts(const std::string& words) {
    return runProgram({"swaymsg", words}).status == 0;
  }
  static void command(const std::string& words) { EXPECT_TRUE(accepts(words)) << words; }
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

}  // namespace vellora
