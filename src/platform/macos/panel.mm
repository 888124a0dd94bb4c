#import "platform/macos/panel.h"

#import "platform/macos/convert.h"
#import "platform/macos/view.h"

@implementation OverlayPanel

- (BOOL)canBecomeKeyWindow {
  return NO;
}

- (BOOL)canBecomeMainWindow {
  return NO;
}

- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag {
  return [super initWithContentRect:contentRect
                          styleMask:style
                            backing:backingStoreType
                              defer:flag];
}

@end

namespace vellora {

namespace {

constexpr NSWindowCollectionBehavior everywhere = NSWindowCollectionBehaviorCanJoinAllSpaces |
                                                  NSWindowCollectionBehaviorIgnoresCycle |
                                                  NSWindowCollectionBehaviorFullScreenAuxiliary;
static_assert(everywhere == 321);

}  // namespace

AppKitPanel::AppKitPanel()
    : panel_([[OverlayPanel alloc] initWithContentRect:NSZeroRect
                                             styleMask:NSWindowStyleMaskNonactivatingPanel
                                               backing:NSBackingStoreBuffered
                                                 defer:NO]) {
  // The reference held here is the only owner.
  panel_.releasedWhenClosed = NO;
}

AppKitPanel::~AppKitPanel() { [panel_ orderOut:nil]; }

void AppKitPanel::configure(NativeView& content) {
  panel_.backgroundColor = NSColor.clearColor;
  panel_.opaque = NO;
  panel_.hasShadow = NO;
  panel_.ignoresMouseEvents = YES;
  panel_.hidesOnDeactivate = NO;
  panel_.level = NSFloatingWindowLevel;
  panel_.collectionBehavior = everywhere;
  panel_.contentView = static_cast<AppKitView&>(content).view();
}

void AppKitPanel::setFrame(const Rect& frame) {
  if (isPlaceable(frame)) [panel_ setFrame:toNSRect(frame) display:NO];
}

void AppKitPanel::orderFrontRegardless() { [panel_ orderFrontRegardless]; }

void AppKitPanel::orderOut() { [panel_ orderOut:nil]; }

bool AppKitPanel::ignoresMouseEvents() const { return panel_.ignoresMouseEvents; }

bool AppKitPanel::isOpaque() const { return panel_.opaque; }

}  // namespace vellora
