#pragma once

#include "contracts/contract.h"
#include "platform/platform.h"

namespace vellora {

// A platform in the circumstances that the subject's maker arranged.
class PlatformSubject {
 public:
  virtual ~PlatformSubject() = default;

  virtual Platform& platform() = 0;
};

using PlatformContract = ContractTest<PlatformSubject>;

}  // namespace vellora
