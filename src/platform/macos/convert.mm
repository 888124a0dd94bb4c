#import "platform/macos/convert.h"

#include "base/utf8.h"

namespace vellora {

NSString* toNSString(std::string_view text) {
  const std::string valid = wellFormed(text);
  NSString* const result = [[NSString alloc] initWithBytes:valid.data()
                                                    length:valid.size()
                                                  encoding:NSUTF8StringEncoding];
  return result != nil ? result : @"";
}

std::string fromNSString(NSString* text) {
  if (text == nil) return {};
  NSData* const bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return std::string(static_cast<const char*>(bytes.bytes), bytes.length);
}

NSRect toNSRect(const Rect& rect) { return NSMakeRect(rect.x, rect.y, rect.width, rect.height); }

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
