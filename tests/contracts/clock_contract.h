#pragma once

#include "contracts/contract.h"
#include "platform/clock.h"

namespace vellora {

class ClockSubject {
 public:
  virtual ~ClockSubject() = default;

  virtual const Clock& clock() = 0;
  // The time that the clock must tell, known from elsewhere. Any thread.
  virtual double truth() const = 0;
};

using ClockContract = ContractTest<ClockSubject>;

}  // namespace vellora
