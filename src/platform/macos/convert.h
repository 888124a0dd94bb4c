#pragma once

#include <string>
#include <string_view>

#import <AppKit/AppKit.h>

#include "base/rect.h"
#include "platform/caption_painter.h"

// Every conversion between the core's values and the system's. Any thread.
namespace vellora {

// Ill-formed UTF-8 becomes U+FFFD, as the core's other texts have it; every character is kept.
NSString* toNSString(std::string_view text);
// Surrogates without their partner become U+FFFD, nil the empty text.
std::string fromNSString(NSString* text);

NSRect toNSRect(const Rect& rect);
// Whether a window or a view can be there, each edge within 32-bit integers: to place one beyond
// them, or at what is not a finite number, is an Objective-C exception.
bool isPlaceable(const Rect& rect);
Rect fromNSRect(NSRect rect);

// Colours in the calibrated spaces: of one white level where the three components agree.
NSColor* toNSColor(const Color& color);

}  // namespace vellora
