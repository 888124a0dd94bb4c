#pragma once

#include <chrono>
#include <memory>

#include "contracts/clock_contract.h"
#include "contracts/platform_contract.h"
#include "contracts/view_contract.h"
#include "platform/platform.h"

// Subjects that are the same for every system: they need nothing but its platform.
namespace vellora {

class SystemPlatform final : public PlatformSubject {
 public:
  Platform& platform() override { return *platform_; }

 private:
  const std::unique_ptr<Platform> platform_ = makePlatform();
};

class SystemClockSubject final : public ClockSubject {
 public:
  const Clock& clock() override { return *clock_; }
  double truth() const override {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
  }

 private:
  const std::unique_ptr<Platform> platform_ = makePlatform();
  const std::shared_ptr<const Clock> clock_ = platform_->makeClock();
};

class SystemDrawing final : public DrawingSubject {
 public:
  NativeView& view() override { return *view_; }
  Panel& panel() override { return *panel_; }
  CaptionPainter& painter() override { return *painter_; }

 private:
  const std::unique_ptr<Platform> platform_ = makePlatform();
  const std::unique_ptr<CaptionPainter> painter_ = platform_->makeCaptionPainter();
  const std::unique_ptr<NativeView> view_ = platform_->makeView();
  const std::unique_ptr<Panel> panel_ = platform_->makePanel();
};

}  // namespace vellora
