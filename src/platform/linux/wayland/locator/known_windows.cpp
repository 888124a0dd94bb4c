#include "platform/linux/wayland/locator/known_windows.h"

#include <algorithm>
#include <utility>

namespace vellora {

void KnownWindows::tell(std::optional<std::vector<LocatedWindow>> windows) {
  if (windows == windows_) return;
  windows_ = std::move(windows);
  // A listener may put another in its place.
  const auto listener = listener_;
  if (listener) listener();
}

std::vector<LocatedWindow> KnownWindows::windows() const {
  return windows_.value_or(std::vector<LocatedWindow>());
}

std::optional<LocatedWindow> KnownWindows::frontWindow() const {
  if (!windows_) return std::nullopt;
  const auto found = std::ranges::find_if(
      *windows_, [](const LocatedWindow& window) { return window.isActive && window.isVisible; });
  if (found == windows_->end()) return std::nullopt;
  return *found;
}

}  // namespace vellora
