#pragma once

#include <cstdint>

#include "contracts/contract.h"
#include "music/music_layout.h"
#include "platform/accessibility.h"

namespace vellora {

// A program that shows one window with lyrics, and may be looked at.
class AccessibilitySubject {
 public:
  virtual ~AccessibilitySubject() = default;

  virtual Accessibility& accessibility() = 0;
  virtual std::int32_t process() = 0;
  // What a reading of its window must give.
  virtual MusicLayout expected() = 0;

  // It answers nothing, as a program that hangs, until it goes on.
  virtual void hang() = 0;
  virtual void goOn() = 0;
  virtual void end() = 0;
};

using AccessibilityContract = ContractTest<AccessibilitySubject>;

// The same where the user's trust can be withdrawn.
class TrustSubject : public AccessibilitySubject {
 public:
  virtual void trust(bool trusted) = 0;
};

using TrustContract = ContractTest<TrustSubject>;

}  // namespace vellora
