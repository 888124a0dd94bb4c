#pragma once

#include <memory>

#include "platform/platform.h"

namespace vellora {

// Lends a platform that the test keeps.
class LentPlatform final : public Platform {
 public:
  explicit LentPlatform(Platform& real) : real_(real) {}

  Application& application() override { return real_.application(); }
  std::shared_ptr<const Clock> makeClock() override { return real_.makeClock(); }
  std::shared_ptr<Accessibility> makeAccessibility() override { return real_.makeAccessibility(); }
  std::unique_ptr<Workspace> makeWorkspace() override { return real_.makeWorkspace(); }
  std::unique_ptr<MusicScripting> makeMusicScripting() override {
    return real_.makeMusicScripting();
  }
  std::unique_ptr<CaptionPainter> makeCaptionPainter() override {
    return real_.makeCaptionPainter();
  }
  std::unique_ptr<NativeView> makeView() override { return real_.makeView(); }
  std::unique_ptr<Panel> makePanel() override { return real_.makePanel(); }
  std::unique_ptr<StatusItem> makeStatusItem() override { return real_.makeStatusItem(); }

 private:
  Platform& real_;
};

}  // namespace vellora
