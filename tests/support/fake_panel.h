#pragma once

#include "platform/panel.h"
#include "support/log.h"

namespace vellora {

// A panel that shows nothing and says what it was told.
class FakePanel final : public Panel {
 public:
  explicit FakePanel(Log& log) : log_(log) {}

  void configure(NativeView& view) override {
    log_.push_back("configure panel");
    content = &view;
  }
  void setFrame(const Rect& frame) override {
    log_.push_back("panel frame");
    lastFrame = frame;
  }
  void orderFrontRegardless() override {
    log_.push_back("show panel");
    visible = true;
  }
  void orderOut() override {
    log_.push_back("hide panel");
    visible = false;
  }
  bool ignoresMouseEvents() const override { return mouseIgnored; }
  bool isOpaque() const override { return opaque; }

  NativeView* content = nullptr;
  Rect lastFrame;
  bool visible = false;
  bool mouseIgnored = true;
  bool opaque = false;

 private:
  Log& log_;
};

}  // namespace vellora
