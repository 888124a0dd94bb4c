#include "platform/platform.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/accessibility/linux_accessibility.h"
#include "platform/linux/drawing/pango_painter.h"
#include "platform/linux/loop/glib_application.h"
#include "platform/linux/player/mpris_scripting.h"
#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/players/player_windows.h"
#include "platform/linux/tray/kept_item.h"
#include "platform/linux/x11/x_panel.h"
#include "platform/linux/x11/x_session.h"
#include "platform/linux/x11/x_view.h"
#include "platform/linux/x11/x_workspace.h"
#include "platform/system_clock.h"

namespace vellora {
namespace {

void tellThatThereIsNoDisplay() {
  const char* const name = std::getenv("DISPLAY");
  const bool named = name != nullptr && *name != '\0';
  std::fprintf(stderr, "Vellora: there is no display (%s), so no captions can be shown.\n",
               named ? "the one that DISPLAY names cannot be reached" : "DISPLAY is not set");
}

// The program's exit status then; the manual page tells of it.
constexpr int displayGone = 3;

// Ends the program when its X server has gone: it could show nothing any more, and must not stand
// in the way of the next session's. The buses take back what it has there.
class DisplayWatch final : public XEventListener {
 public:
  explicit DisplayWatch(std::shared_ptr<XSession> session) : session_(std::move(session)) {
    session_->addListener(*this);
  }
  ~DisplayWatch() override { session_->removeListener(*this); }
  DisplayWatch(const DisplayWatch&) = delete;
  DisplayWatch& operator=(const DisplayWatch&) = delete;

  void handleEvent(const xcb_generic_event_t&) override {}
  void sessionLost() override {
    std::fputs("Vellora: the display is gone, so the program ends.\n", stderr);
    std::cout.flush();
    std::fflush(nullptr);
    std::_Exit(displayGone);
  }

 private:
  std::shared_ptr<XSession> session_;
};

std::vector<PlayerDescriptionPtr> readPlayers() {
  DescriptionList list = readDescriptions(descriptionFolders());
  for (const DescriptionProblem& problem : list.problems) {
    std::fprintf(stderr, "Vellora: %s\n", lineOf(problem).c_str());
  }
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
    return std::make_unique<XWorkspace>(session(), readPlayers(), playerWindows_);
  }
  std::unique_ptr<MusicScripting> makeMusicScripting() override {
    return std::make_unique<MprisScripting>(playerWindows_);
  }
  std::unique_ptr<CaptionPainter> makeCaptionPainter() override {
    return std::make_unique<PangoPainter>();
  }
  std::unique_ptr<NativeView> makeView() override { return std::make_unique<XView>(session()); }
  std::unique_ptr<Panel> makePanel() override { return std::make_unique<XPanel>(session()); }
  // The overlay asks for it once, at its launch. What draws into a file or only reads never does,
  // and needs no display.
  std::unique_ptr<StatusItem> makeStatusItem() override {
    if (session()->present()) {
      displayWatch_.emplace(session());
    } else {
      tellThatThereIsNoDisplay();
    }
    return makeNotifierItem();
  }

 private:
  // One display connection for all that needs one.
  const std::shared_ptr<XSession>& session() {
    if (!session_) session_ = std::make_shared<XSession>(nullptr);
    return session_;
  }

  std::unique_ptr<Application> application_;
  std::shared_ptr<XSession> session_;
  std::optional<DisplayWatch> displayWatch_;
  const std::shared_ptr<PlayerWindows> playerWindows_ = std::make_shared<PlayerWindows>();
};

}  // namespace

std::unique_ptr<Platform> makePlatform() { return std::make_unique<LinuxPlatform>(); }

}  // namespace vellora
