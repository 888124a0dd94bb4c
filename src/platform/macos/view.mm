#import "platform/macos/view.h"

#include <utility>

#import "platform/macos/convert.h"
#import "platform/macos/drawing.h"

@implementation VelloraCaptionView {
  std::function<void(vellora::Surface&)> _draw;
}

- (BOOL)isFlipped {
  return YES;
}

- (void)setDrawFunction:(std::function<void(vellora::Surface&)>)draw {
  _draw = std::move(draw);
}

// Everything is drawn each time, whatever part of the view asked for it.
- (void)drawRect:(NSRect)__unused dirtyRect {
  if (!_draw) return;
  vellora::AppKitSurface surface;
  _draw(surface);
}

@end

namespace vellora {

AppKitView::AppKitView() : view_([[VelloraCaptionView alloc] initWithFrame:NSZeroRect]) {}

void AppKitView::setDrawFunction(std::function<void(Surface&)> draw) {
  [view_ setDrawFunction:std::move(draw)];
}

void AppKitView::setFrame(const Rect& frame) {
  if (isPlaceable(frame)) view_.frame = toNSRect(frame);
}

Rect AppKitView::bounds() const { return fromNSRect(view_.bounds); }

void AppKitView::setNeedsDisplay() { view_.needsDisplay = YES; }

std::optional<double> AppKitView::windowScale() const {
  NSWindow* const window = view_.window;
  if (window == nil) return std::nullopt;
  return window.backingScaleFactor;
}

std::unique_ptr<Bitmap> AppKitView::bitmapForCachingDisplay() {
  NSBitmapImageRep* const representation =
      [view_ bitmapImageRepForCachingDisplayInRect:view_.bounds];
  if (representation == nil) return nullptr;
  return std::make_unique<AppKitBitmap>(representation);
}

void AppKitView::cacheDisplay(Bitmap& bitmap) {
  @autoreleasepool {
    [view_ cacheDisplayInRect:view_.bounds
             toBitmapImageRep:static_cast<AppKitBitmap&>(bitmap).representation()];
  }
}

}  // namespace vellora
