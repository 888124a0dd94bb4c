#pragma once

#include <functional>
#include <string>
#include <vector>

#include "contracts/contract.h"
#include "platform/application.h"

namespace vellora {

class ApplicationSubject {
 public:
  virtual ~ApplicationSubject() = default;

  virtual Application& application() = 0;
  virtual void endApplication() = 0;

  // Lets the event loop go on until the condition holds; false when that takes unreasonably long.
  virtual bool loopUntil(const std::function<bool()>& condition) = 0;
  // Lets the event loop do what it has to do by now.
  virtual void settle() = 0;

  // Has the desktop ask the program to open URLs, and returns when it has taken them.
  virtual void open(const std::vector<std::string>& urls) = 0;
  // URLs that the desktop can ask for, odd ones among them.
  virtual std::vector<std::string> urls() const = 0;

  // Gives the queue a piece of work in whose middle it is from here on; what is returned lets it
  // end.
  virtual std::function<void()> occupy(SerialQueue& queue);
};

using ApplicationContract = ContractTest<ApplicationSubject>;

// An application whose timers go by a clock of their own.
class TimerSubject : public ApplicationSubject {
 public:
  // Seconds of a clock that nobody sets, and the main thread busy for some of them.
  virtual double elapsed() const = 0;
  virtual void beBusy(double seconds) = 0;
};

using TimerContract = ContractTest<TimerSubject>;

}  // namespace vellora
