#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

// A locator that answers with what it has been told last. Main thread.
class KnownWindows : public WindowLocator {
 public:
  bool isKnown() const final { return windows_.has_value(); }
  std::optional<LocatedWindow> frontWindow() const final;
  std::vector<LocatedWindow> windows() const final;
  void whenChanged(std::function<void()> listener) final { listener_ = std::move(listener); }

 protected:
  // Nothing: the compositor is not there, or does not answer. Calls the listener where that is
  // another answer than before.
  void tell(std::optional<std::vector<LocatedWindow>> windows);

 private:
  std::optional<std::vector<LocatedWindow>> windows_;
  std::function<void()> listener_;
};

}  // namespace vellora
