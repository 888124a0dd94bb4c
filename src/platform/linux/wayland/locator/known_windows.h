#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

// What a locator has been told last, and who wants to hear of it. Main thread.
class KnownWindows {
 public:
  // Nothing: the compositor is not there, or does not answer. Calls the listener where that is
  // another answer than before.
  void tell(std::optional<std::vector<LocatedWindow>> windows);

  bool isKnown() const { return windows_.has_value(); }
  std::vector<LocatedWindow> all() const;
  // The one that has the keyboard and can be seen.
  std::optional<LocatedWindow> front() const;

  void setListener(std::function<void()> listener) { listener_ = std::move(listener); }

 private:
  std::optional<std::vector<LocatedWindow>> windows_;
  std::function<void()> listener_;
};

}  // namespace vellora
