#pragma once

#include <memory>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>

namespace vellora {

struct CfRelease {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

// Owns one reference to a Core Foundation object of type `Ref` (CFStringRef, AXUIElementRef, …).
template <typename Ref>
using CfPtr = std::unique_ptr<std::remove_pointer_t<Ref>, CfRelease>;

// A reference of one's own to an object that somebody else owns; null to null.
template <typename Ref>
CfPtr<Ref> retained(Ref object) {
  if (object != nullptr) CFRetain(object);
  return CfPtr<Ref>(object);
}

}  // namespace vellora
