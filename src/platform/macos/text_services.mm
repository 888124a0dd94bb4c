#include "platform/text_services.h"

#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include "platform/macos/cf_ptr.h"
#import "platform/macos/convert.h"

namespace vellora::TextServices {

namespace {

CfPtr<CFMutableStringRef> mutableCopy(std::string_view text) {
  return CfPtr<CFMutableStringRef>(
      CFStringCreateMutableCopy(kCFAllocatorDefault, 0, (__bridge CFStringRef)toNSString(text)));
}

std::string textOf(const CfPtr<CFMutableStringRef>& text) {
  return fromNSString((__bridge NSString*)text.get());
}

// 1, 128 and 256: together 385.
constexpr CFStringCompareFlags foldingOptions =
    kCFCompareCaseInsensitive | kCFCompareDiacriticInsensitive | kCFCompareWidthInsensitive;
static_assert(foldingOptions == 385);

// The script Tangut, category Lo, which the system's set leaves out (Unicode, Blocks.txt).
bool isTangut(char32_t character) {
  return (character >= 0x17000 && character <= 0x187F7) ||
         (character >= 0x18800 && character <= 0x18AFF) ||
         (character >= 0x18D00 && character <= 0x18D08);
}

// Whether an extended grapheme cluster (UAX #29) ends at `offset`, which is above 0. The regular
// expressions' \X is that cluster; NSString's "composed character sequences" are others: they go on
// after a virama, and end before the Thai vowel am.
bool isCharacterBoundary(NSString* text, NSUInteger offset) {
  // Does not change once made, and may be used on every thread.
  static NSRegularExpression* const character =
      [NSRegularExpression regularExpressionWithPattern:@"\\X" options:0 error:nil];
  __block bool boundary = false;
  [character enumerateMatchesInString:text
                              options:0
                                range:NSMakeRange(0, text.length)
                           usingBlock:^(NSTextCheckingResult* match, NSMatchingFlags, BOOL* stop) {
                             const NSUInteger end = NSMaxRange(match.range);
                             boundary = end == offset;
                             *stop = end >= offset;
                           }];
  return boundary;
}

}  // namespace

std::optional<std::string> simplified(std::string_view text) {
  @autoreleasepool {
    const CfPtr<CFMutableStringRef> copy = mutableCopy(text);
    if (!CFStringTransform(copy.get(), nullptr, CFSTR("Traditional-Simplified"), false)) {
      return std::nullopt;
    }
    return textOf(copy);
  }
}

std::string folded(std::string_view text) {
  @autoreleasepool {
    const CfPtr<CFMutableStringRef> copy = mutableCopy(text);
    const CfPtr<CFLocaleRef> locale(CFLocaleCreate(kCFAllocatorDefault, CFSTR("en_US_POSIX")));
    CFStringFold(copy.get(), foldingOptions, locale.get());
    return textOf(copy);
  }
}

bool isAlphanumeric(char32_t character) {
  return CFCharacterSetIsLongCharacterMember(
             CFCharacterSetGetPredefined(kCFCharacterSetAlphaNumeric),
             static_cast<UTF32Char>(character)) ||
         isTangut(character);
}

std::string canonicalForm(std::string_view text) {
  @autoreleasepool {
    const CfPtr<CFMutableStringRef> copy = mutableCopy(text);
    CFStringNormalize(copy.get(), kCFStringNormalizationFormC);
    return textOf(copy);
  }
}

// Canonical equivalents have their character boundaries at the same places, and nothing composes
// across one; so whole characters agree where the canonical forms do and a boundary follows.
bool beginsWith(std::string_view text, std::string_view prefix) {
  if (prefix.empty()) return true;
  @autoreleasepool {
    const std::string whole = canonicalForm(text);
    const std::string begin = canonicalForm(prefix);
    if (!whole.starts_with(begin)) return false;
    if (whole.size() == begin.size()) return true;
    return isCharacterBoundary(toNSString(whole), toNSString(begin).length);
  }
}

}  // namespace vellora::TextServices
