#include "platform/linux/players/player_windows.h"

#include <algorithm>
#include <utility>

namespace vellora {

namespace {

auto ofProcess(std::int32_t process) {
  return [process](const PlayerWindow& window) { return window.process == process; };
}

}  // namespace

void PlayerWindows::bringToFront(PlayerWindow window) {
  const std::lock_guard lock(mutex_);
  std::erase_if(windows_, ofProcess(window.process));
  windows_.insert(windows_.begin(), std::move(window));
}

void PlayerWindows::note(PlayerWindow window) {
  const std::lock_guard lock(mutex_);
  const auto known = std::ranges::find_if(windows_, ofProcess(window.process));
  if (known == windows_.end()) {
    windows_.push_back(std::move(window));
  } else {
    *known = std::move(window);
  }
}

void PlayerWindows::keepOnly(const std::vector<std::int32_t>& processes) {
  const std::lock_guard lock(mutex_);
  std::erase_if(windows_, [&processes](const PlayerWindow& window) {
    return std::ranges::count(processes, window.process) == 0;
  });
}

std::optional<PlayerWindow> PlayerWindows::find(std::int32_t process) const {
  const std::lock_guard lock(mutex_);
  const auto known = std::ranges::find_if(windows_, ofProcess(process));
  if (known == windows_.end()) return std::nullopt;
  return *known;
}

std::vector<PlayerWindow> PlayerWindows::all() const {
  const std::lock_guard lock(mutex_);
  return windows_;
}

}  // namespace vellora
