#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "support/fake_accessibility.h"
#include "support/fake_application.h"
#include "support/fake_clock.h"
#include "support/fake_music_scripting.h"
#include "support/fake_native_view.h"
#include "support/fake_painter.h"
#include "support/fake_panel.h"
#include "support/fake_status_item.h"
#include "support/fake_workspace.h"
#include "support/log.h"

namespace vellora {

// The whole platform as fakes with one log. The clock and the accessibility service are shared with
// whoever asks for them. Of the other seams the one made last is at hand; its maker owns it, so
// that these pointers hold for as long as the controller does. Settings above them are for what is
// made from then on.
class FakePlatform : public Platform {
 public:
  Application& application() override { return app; }
  std::shared_ptr<const Clock> makeClock() override { return clock; }
  std::shared_ptr<Accessibility> makeAccessibility() override { return accessibility; }
  std::unique_ptr<Workspace> makeWorkspace() override {
    auto made = std::make_unique<FakeWorkspace>(log);
    made->frontmost = frontmost;
    made->running = running;
    workspace = made.get();
    return made;
  }
  std::unique_ptr<MusicScripting> makeMusicScripting() override {
    auto made = std::make_unique<FakeMusicScripting>();
    scripting = made.get();
    return made;
  }
  std::unique_ptr<CaptionPainter> makeCaptionPainter() override {
    auto made = std::make_unique<FakePainter>(log);
    painter = made.get();
    return made;
  }
  std::unique_ptr<NativeView> makeView() override {
    auto made = std::make_unique<FakeNativeView>(log);
    made->nextBitmap = std::move(bitmap);
    made->hasBitmaps = viewHasBitmaps;
    view = made.get();
    return made;
  }
  std::unique_ptr<Panel> makePanel() override {
    auto made = std::make_unique<FakePanel>(log);
    made->mouseIgnored = mouseIgnored;
    made->opaque = opaque;
    panel = made.get();
    return made;
  }
  std::unique_ptr<StatusItem> makeStatusItem() override {
    log.push_back("make status item");
    if (!statusItemHasPlace) return nullptr;
    auto made = std::make_unique<FakeStatusItem>(log, statusItemHasButton);
    statusItem = made.get();
    return made;
  }

  Log log;
  std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
  std::shared_ptr<FakeAccessibility> accessibility = std::make_shared<FakeAccessibility>(&log);
  FakeApplication app{log};

  std::shared_ptr<FakeRunningApplication> frontmost;
  std::vector<std::shared_ptr<FakeRunningApplication>> running;
  std::unique_ptr<FakeBitmap> bitmap;
  bool viewHasBitmaps = true;
  bool mouseIgnored = true;
  bool opaque = false;
  bool statusItemHasPlace = true;
  bool statusItemHasButton = true;

  FakeWorkspace* workspace = nullptr;
  FakeMusicScripting* scripting = nullptr;
  FakePainter* painter = nullptr;
  FakeNativeView* view = nullptr;
  FakePanel* panel = nullptr;
  FakeStatusItem* statusItem = nullptr;
};

}  // namespace vellora
