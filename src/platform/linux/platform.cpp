#include "platform/platform.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/environment.h"
#include "platform/linux/accessibility/linux_accessibility.h"
#include "platform/linux/drawing/pango_painter.h"
#include "platform/linux/loop/glib_application.h"
#include "platform/linux/loop/memory_return.h"
#include "platform/linux/player/mpris_scripting.h"
#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/players/player_windows.h"
#include "platform/linux/session_window_system.h"
#include "platform/linux/tray/kept_item.h"
#include "platform/system_clock.h"

namespace vellora {
namespace {

void tell(const std::string& line) { std::fprintf(stderr, "Vellora: %s\n", line.c_str()); }

void tellThatThereIsNoDisplay(WindowSystemKind kind) {
  const std::string reason = kind == WindowSystemKind::none ? "Wayland cannot be used"
                             : environmentVariable("DISPLAY")
                                 ? "the one that DISPLAY names cannot be reached"
                                 : "DISPLAY is not set";
  tell("there is no display (" + reason + "), so no captions can be shown.");
}

// The program's exit status then; the manual page tells of it.
constexpr int displayGone = 3;

// The program could show nothing any more, and must not stand in the way of the next session's. The
// buses take back what it has there.
[[noreturn]] void endWithoutDisplay() {
  std::fputs("Vellora: the display is gone, so the program ends.\n", stderr);
  std::cout.flush();
  std::fflush(nullptr);
  std::_Exit(displayGone);
}

std::vector<PlayerDescriptionPtr> readPlayers() {
  DescriptionList list = readDescriptions(descriptionFolders());
  for (const DescriptionProblem& problem : list.problems) tell(lineOf(problem));
  return std::move(list.descriptions);
}

// Connects to nothing until it is asked for what needs it.
class LinuxPlatform final : public Platform {
 public:
  Application& application() override {
    if (!application_) application_ = std::make_unique<GlibApplication>();
    return *application_;
  }
  std::shared_ptr<const Clock> makeClock() override { return std::make_shared<SystemClock>(); }
  std::shared_ptr<Accessibility> makeAccessibility() override {
    return makeLinuxAccessibility(usualMemory, playerWindows_);
  }
  std::unique_ptr<Workspace> makeWorkspace() override {
    return windowSystem().makeWorkspace(readPlayers(), playerWindows_);
  }
  std::unique_ptr<MusicScripting> makeMusicScripting() override {
    return std::make_unique<MprisScripting>(playerWindows_, MprisScripting::chosenPatience());
  }
  std::unique_ptr<CaptionPainter> makeCaptionPainter() override {
    return std::make_unique<PangoPainter>();
  }
  std::unique_ptr<NativeView> makeView() override { return windowSystem().makeView(); }
  std::unique_ptr<Panel> makePanel() override { return windowSystem().makePanel(); }
  // The overlay asks for it once, at its launch. What draws into a file or only reads never does,
  // and needs no display.
  std::unique_ptr<StatusItem> makeStatusItem() override {
    WindowSystem& system = windowSystem();
    for (const std::string& line : windowSystem_->choice.lines) tell(line);
    if (system.present()) {
      system.whenLost(&endWithoutDisplay);
    } else {
      tellThatThereIsNoDisplay(windowSystem_->choice.kind);
    }
    return makeNotifierItem();
  }

 private:
  // One display connection for all that needs one.
  WindowSystem& windowSystem() {
    if (!windowSystem_) windowSystem_ = connectToSession();
    return *windowSystem_->system;
  }

  std::unique_ptr<Application> application_;
  std::optional<SessionWindowSystem> windowSystem_;
  const std::shared_ptr<PlayerWindows> playerWindows_ = std::make_shared<PlayerWindows>();
};

}  // namespace

std::unique_ptr<Platform> makePlatform() {
  returnLargeBlocks();
  return std::make_unique<LinuxPlatform>();
}

}  // namespace vellora
