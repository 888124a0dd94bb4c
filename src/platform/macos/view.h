#pragma once

#include <functional>
#include <memory>

#import <AppKit/AppKit.h>

#include "platform/native_view.h"

// The panel's content view: flipped, drawn by the core.
@interface VelloraCaptionView : NSView
- (void)setDrawFunction:(std::function<void(vellora::Surface&)>)draw;
@end

namespace vellora {

class AppKitView final : public NativeView {
 public:
  AppKitView();

  void setDrawFunction(std::function<void(Surface&)> draw) override;
  void setFrame(const Rect& frame) override;
  Rect bounds() const override;
  void setNeedsDisplay() override;
  std::optional<double> windowScale() const override;
  std::unique_ptr<Bitmap> bitmapForCachingDisplay() override;
  void cacheDisplay(Bitmap& bitmap) override;

  NSView* view() const { return view_; }

 private:
  VelloraCaptionView* const view_;
};

}  // namespace vellora
