#include "platform/linux/wayland/locator/asked_windows.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/linux/glib/event_source.h"

namespace vellora {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds firstPatience(100);
constexpr milliseconds longestPatience(1000);
constexpr milliseconds longestSilence(2000);
// After that the answer may have been lost. A compositor that hangs takes no connections meanwhile,
// and should not find many when it is back.
constexpr milliseconds longestHang(8000);
// Between two questions: a program may change its title at every frame.
constexpr milliseconds leastPause(50);
constexpr milliseconds usualPause(500);
constexpr milliseconds pauseInMotion(100);
constexpr milliseconds motion(1000);  // so long after a change more are expected

GSourcePtr after(milliseconds span, std::function<void()> function) {
  const auto count = static_cast<guint>(std::max(span.count(), milliseconds::rep(0)));
  return attachSource(g_timeout_source_new(count), std::move(function));
}

}  // namespace

AskedWindows::AskedWindows() : patience_(firstPatience) {}

void AskedWindows::setWatched(bool isWatched) {
  if (std::exchange(isWatched_, isWatched) == isWatched) return;
  if (isWatched_) askAgainLater();
  if (!isWatched_ && !isAskedAgain_) next_.reset();
}

void AskedWindows::connect() {
  connecting_.reset();
  isOpen_ = open();
  if (!isOpen_) return reconnectLater();
  isAsked_ = false;
  isAskedAgain_ = false;
  ask();
}

void AskedWindows::reconnectLater() {
  isOpen_ = false;
  close();
  silence_.reset();
  next_.reset();
  connecting_ = after(patience_, [this] { connect(); });
  patience_ = std::min(patience_ * 2, longestPatience);
  tell(std::nullopt);
}

void AskedWindows::takeAnswer(std::optional<std::vector<LocatedWindow>> windows) {
  if (!windows) return reconnectLater();
  patience_ = firstPatience;
  silence_.reset();
  isAsked_ = false;
  if (*windows != this->windows()) moved_ = Clock::now();
  // Before the next question: where that cannot be put, nothing is known any more.
  tell(std::move(windows));
  if (isAskedAgain_) {
    askSoon();
  } else if (isWatched_) {
    askAgainLater();
  }
}

void AskedWindows::ask() {
  next_.reset();
  isAskedAgain_ = false;
  if (!putQuestion()) return reconnectLater();
  isAsked_ = true;
  asked_ = Clock::now();
  silence_ = after(longestSilence, [this] {
    silence_ = after(longestHang, [this] { reconnectLater(); });
    tell(std::nullopt);
  });
}

// As soon as the last question is answered and a moment has passed since it was put.
void AskedWindows::askSoon() {
  isAskedAgain_ = true;
  if (isAsked_) return;
  const auto passed = std::chrono::floor<milliseconds>(Clock::now() - asked_);
  if (passed >= leastPause) return ask();
  next_ = after(leastPause - passed, [this] { ask(); });
}

void AskedWindows::askAgainLater() {
  if (!isOpen_ || isAsked_ || isAskedAgain_) return;
  const bool isInMotion = Clock::now() - moved_ < motion;
  next_ = after(isInMotion ? pauseInMotion : usualPause, [this] { ask(); });
}

}  // namespace vellora
