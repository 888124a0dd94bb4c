#pragma once

#import <AppKit/AppKit.h>

#include "platform/panel.h"

// A panel that never takes the keyboard.
@interface OverlayPanel : NSPanel
@end

namespace vellora {

class AppKitPanel final : public Panel {
 public:
  AppKitPanel();
  ~AppKitPanel() override;

  void configure(NativeView& content) override;
  void setFrame(const Rect& frame) override;
  void orderFrontRegardless() override;
  void orderOut() override;
  bool ignoresMouseEvents() const override;
  bool isOpaque() const override;

 private:
  OverlayPanel* const panel_;
};

}  // namespace vellora
