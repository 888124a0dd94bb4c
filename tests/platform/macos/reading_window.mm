// A small window that shows lyrics as the player's does, for the accessibility reader's test.
// Prints what a reading of it must give, a line each, in accessibility coordinates (points, origin
// at the top left of the primary screen, y downward): "window", "viewport", "row" with x, y, width,
// height and text, then "ready". Ends when its standard input does.
#include <cstdio>
#include <cstdlib>

#import <AppKit/AppKit.h>

namespace {

NSView* labelledView(NSRect frame, NSAccessibilityRole role, NSString* label, NSString* title) {
  NSView* const view = [[NSView alloc] initWithFrame:frame];
  view.accessibilityElement = YES;
  view.accessibilityRole = role;
  view.accessibilityLabel = label;
  view.accessibilityTitle = title;
  return view;
}

NSRect onScreen(NSView* view) {
  NSRect rect = [view.window convertRectToScreen:[view convertRect:view.bounds toView:nil]];
  rect.origin.y = NSScreen.screens[0].frame.size.height - NSMaxY(rect);
  return rect;
}

void print(const char* what, NSRect rect, NSString* text) {
  std::printf("%s %.17g %.17g %.17g %.17g %s\n", what, rect.origin.x, rect.origin.y,
              rect.size.width, rect.size.height, text.UTF8String);
}

}  // namespace

int main() {
  @autoreleasepool {
    NSApplication* const application = [NSApplication sharedApplication];
    application.activationPolicy = NSApplicationActivationPolicyAccessory;
    NSWindow* const window = [[NSWindow alloc] initWithContentRect:NSMakeRect(200, 200, 500, 400)
                                                         styleMask:NSWindowStyleMaskTitled
                                                           backing:NSBackingStoreBuffered
                                                             defer:NO];
    window.releasedWhenClosed = NO;
    NSView* const content = window.contentView;

    NSView* const playing = labelledView(NSMakeRect(20, 360, 460, 20), NSAccessibilityGroupRole,
                                         @"A Song — An Artist", nil);
    playing.accessibilityIdentifier = @"Music.nowPlaying.title-Music.nowPlaying.subtitle";
    [content addSubview:playing];
    [content addSubview:labelledView(NSMakeRect(20, 330, 80, 20), NSAccessibilityButtonRole, nil,
                                     @"Outside the lyrics")];

    NSView* const lyrics =
        labelledView(NSMakeRect(20, 20, 460, 300), NSAccessibilityGroupRole, @"Lyrics", nil);
    [content addSubview:lyrics];
    NSView* const scroll =
        labelledView(NSMakeRect(10, 10, 440, 280), NSAccessibilityScrollAreaRole, nil, nil);
    [lyrics addSubview:scroll];
    // The lower one first: a reading sorts its rows by their tops.
    NSView* const second = labelledView(NSMakeRect(0, 140, 440, 40), NSAccessibilityButtonRole,
                                        @"Only a description", nil);
    NSView* const first = labelledView(NSMakeRect(0, 200, 440, 40), NSAccessibilityButtonRole,
                                       @"not this", @"第一行");
    [scroll addSubview:second];
    [scroll addSubview:first];
    [scroll
        addSubview:labelledView(NSMakeRect(0, 80, 440, 40), NSAccessibilityButtonRole, nil, nil)];

    [window orderFrontRegardless];
    NSRect whole = window.frame;
    whole.origin.y = NSScreen.screens[0].frame.size.height - NSMaxY(whole);
    print("window", whole, @"A Song — An Artist");
    print("viewport", onScreen(scroll), @"");
    print("row", onScreen(first), @"第一行");
    print("row", onScreen(second), @"Only a description");
    std::printf("ready\n");
    std::fflush(stdout);

    NSFileHandle* const input = NSFileHandle.fileHandleWithStandardInput;
    input.readabilityHandler = ^(NSFileHandle* handle) {
      if (handle.availableData.length == 0) std::_Exit(EXIT_SUCCESS);
    };
    [application run];
  }
  return 0;
}
