#import "platform/macos/convert.h"

#include <climits>

#include "base/utf16.h"

namespace vellora {

// By way of UTF-16, which is what an NSString holds: its own readers of UTF-8 drop a byte-order
// mark at the front, and its writers are not bound to any replacement of lone surrogates.
static_assert(sizeof(unichar) == sizeof(char16_t));

NSString* toNSString(std::string_view text) {
  const std::u16string units = toUtf16(text);
  return [[NSString alloc] initWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                       length:units.size()];
}

std::string fromNSString(NSString* text) {
  if (text == nil) return {};
  std::u16string units(text.length, u'\0');
  [text getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(0, units.size())];
  return fromUtf16(units);
}

NSRect toNSRect(const Rect& rect) { return NSMakeRect(rect.x, rect.y, rect.width, rect.height); }

// The rectangle that AppKit asserts to hold each window's frame; comparisons with what is not a
// number fail, and only null would get past them.
bool isPlaceable(const Rect& rect) {
  constexpr double extent = static_cast<double>(INT_MAX) - INT_MIN;
  constexpr Rect everywhere{INT_MIN, INT_MIN, extent, extent};
  return !rect.isNull() && everywhere.contains(rect);
}

Rect fromNSRect(NSRect rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

NSColor* toNSColor(const Color& color) {
  if (color.red == color.green && color.green == color.blue) {
    return [NSColor colorWithCalibratedWhite:color.red alpha:color.alpha];
  }
  return [NSColor colorWithCalibratedRed:color.red
                                   green:color.green
                                    blue:color.blue
                                   alpha:color.alpha];
}

}  // namespace vellora
