#import "platform/macos/accessibility.h"

#include <utility>

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include "platform/macos/cf_ptr.h"
#import "platform/macos/convert.h"

namespace vellora {

namespace {

class AxElement final : public AccessibilityElement {
 public:
  // Null is an element whose object is gone.
  explicit AxElement(CfPtr<AXUIElementRef> element) : element(std::move(element)) {}

  AttributeValue attribute(std::string_view name) override {
    if (element == nullptr) return {};
    @autoreleasepool {
      CFTypeRef copied = nullptr;
      const AXError error = AXUIElementCopyAttributeValue(
          element.get(), (__bridge CFStringRef)toNSString(name), &copied);
      const CfPtr<CFTypeRef> value(copied);
      if (error != kAXErrorSuccess || value == nullptr) return {};
      return valueOf(value.get());
    }
  }

 private:
  static AttributeValue valueOf(CFTypeRef value) {
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFStringGetTypeID()) {
      return fromNSString((__bridge NSString*)static_cast<CFStringRef>(value));
    }
    if (type == CFBooleanGetTypeID()) {
      return static_cast<bool>(CFBooleanGetValue(static_cast<CFBooleanRef>(value)));
    }
    if (type == AXValueGetTypeID()) return geometryOf(static_cast<AXValueRef>(value));
    if (type == CFArrayGetTypeID()) return elementsOf(static_cast<CFArrayRef>(value));
    return {};
  }

  static AttributeValue geometryOf(AXValueRef value) {
    CGPoint point = CGPointZero;
    if (AXValueGetValue(value, kAXValueTypeCGPoint, &point)) return Point{point.x, point.y};
    CGSize size = CGSizeZero;
    if (AXValueGetValue(value, kAXValueTypeCGSize, &size)) return Size{size.width, size.height};
    return {};
  }

  // A list that holds anything but elements is no list of elements.
  static AttributeValue elementsOf(CFArrayRef list) {
    AccessibilityElements elements;
    const CFIndex count = CFArrayGetCount(list);
    elements.reserve(static_cast<std::size_t>(count));
    for (CFIndex i = 0; i < count; ++i) {
      const CFTypeRef item = CFArrayGetValueAtIndex(list, i);
      if (item == nullptr || CFGetTypeID(item) != AXUIElementGetTypeID()) return {};
      elements.push_back(std::make_shared<AxElement>(retained(static_cast<AXUIElementRef>(item))));
    }
    return elements;
  }

  const CfPtr<AXUIElementRef> element;
};

class AxAccessibility final : public Accessibility {
 public:
  bool isTrusted() override { return AXIsProcessTrusted(); }

  void requestTrust() override {
    @autoreleasepool {
      NSDictionary* const options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
      AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
    }
  }

  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processIdentifier,
                                                           const Player&,
                                                           const ReadingLimits& limits) override {
    CfPtr<AXUIElementRef> element(AXUIElementCreateApplication(processIdentifier));
    if (element != nullptr) AXUIElementSetMessagingTimeout(element.get(), limits.messagingTimeout);
    return std::make_shared<AxElement>(std::move(element));
  }
};

}  // namespace

std::shared_ptr<Accessibility> makeAxAccessibility() { return std::make_shared<AxAccessibility>(); }

}  // namespace vellora
