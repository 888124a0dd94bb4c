#include "platform/platform.h"

#import "platform/macos/accessibility.h"
#import "platform/macos/application.h"
#import "platform/macos/drawing.h"
#import "platform/macos/music_scripting.h"
#import "platform/macos/panel.h"
#import "platform/macos/status_item.h"
#import "platform/macos/view.h"
#import "platform/macos/workspace.h"
#import "platform/system_clock.h"

namespace vellora {

namespace {

class MacPlatform final : public Platform {
 public:
  Application& application() override {
    if (!application_) application_ = makeAppKitApplication();
    return *application_;
  }
  std::shared_ptr<const Clock> makeClock() override { return std::make_shared<SystemClock>(); }
  std::shared_ptr<Accessibility> makeAccessibility() override { return makeAxAccessibility(); }
  std::unique_ptr<Workspace> makeWorkspace() override { return makeAppKitWorkspace(); }
  std::unique_ptr<MusicScripting> makeMusicScripting() override { return makeAppleScripting(); }
  std::unique_ptr<CaptionPainter> makeCaptionPainter() override { return makeAppKitPainter(); }
  std::unique_ptr<NativeView> makeView() override { return std::make_unique<AppKitView>(); }
  std::unique_ptr<Panel> makePanel() override { return std::make_unique<AppKitPanel>(); }
  std::unique_ptr<StatusItem> makeStatusItem() override {
    return makeMenuBarItem(
        [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]);
  }

 private:
  std::unique_ptr<Application> application_;
};

}  // namespace

std::unique_ptr<Platform> makePlatform() { return std::make_unique<MacPlatform>(); }

}  // namespace vellora
