#include "platform/linux/wayland/locator/i3_locator.h"

#include <algorithm>
#include <utility>

#include "platform/linux/glib/event_source.h"
#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/i3_tree.h"

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

I3Locator::I3Locator(std::string path) : path_(std::move(path)), patience_(firstPatience) {
  connect();
}

void I3Locator::setWatched(bool isWatched) {
  if (std::exchange(isWatched_, isWatched) == isWatched) return;
  if (isWatched_) askAgainLater();
  if (!isWatched_ && !isAskedAgain_) next_.reset();
}

void I3Locator::connect() {
  connecting_.reset();
  connection_ = std::make_unique<I3Connection>(
      I3Connection::Listener{.told = [this](const I3Message& message) { take(message); },
                             .ended = [this] { reconnectLater(); }});
  // One by one: where one name is unknown (sway 1.7 has no "output"), the others of its list may be
  // passed over.
  bool isSent = connection_->open(path_);
  for (const char* const events :
       {R"(["window"])", R"(["workspace"])", R"(["output"])", R"(["shutdown"])"}) {
    isSent = isSent && connection_->send(I3Message::subscribe, events);
  }
  if (!isSent) return reconnectLater();
  isAsked_ = false;
  isAskedAgain_ = false;
  ask();
}

void I3Locator::reconnectLater() {
  connection_.reset();
  silence_.reset();
  next_.reset();
  connecting_ = after(patience_, [this] { connect(); });
  patience_ = std::min(patience_ * 2, longestPatience);
  tell(std::nullopt);
}

void I3Locator::take(const I3Message& message) {
  if (message.isEvent()) return askSoon();
  if (message.type == I3Message::getTree) takeTree(message.payload);
}

void I3Locator::takeTree(const std::string& json) {
  // Titles of X11 programs are passed on as they are, which need not be UTF-8.
  const GCharPtr text(g_utf8_make_valid(json.data(), static_cast<gssize>(json.size())));
  auto windows = windowsInI3Tree(text.get());
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

void I3Locator::ask() {
  next_.reset();
  isAskedAgain_ = false;
  if (!connection_->send(I3Message::getTree)) return reconnectLater();
  isAsked_ = true;
  asked_ = Clock::now();
  silence_ = after(longestSilence, [this] {
    silence_ = after(longestHang, [this] { reconnectLater(); });
    tell(std::nullopt);
  });
}

// As soon as the last question is answered and a moment has passed since it was put.
void I3Locator::askSoon() {
  isAskedAgain_ = true;
  if (isAsked_) return;
  const auto passed = std::chrono::floor<milliseconds>(Clock::now() - asked_);
  if (passed >= leastPause) return ask();
  next_ = after(leastPause - passed, [this] { ask(); });
}

void I3Locator::askAgainLater() {
  if (!connection_ || isAsked_ || isAskedAgain_) return;
  const bool isInMotion = Clock::now() - moved_ < motion;
  next_ = after(isInMotion ? pauseInMotion : usualPause, [this] { ask(); });
}

}  // namespace vellora
