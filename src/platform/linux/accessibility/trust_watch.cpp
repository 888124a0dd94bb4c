#include "platform/linux/accessibility/trust_watch.h"

namespace vellora {

namespace {

constexpr auto firstAnswerWait = std::chrono::milliseconds(250);

}  // namespace

bool TrustWatch::isTrusted() {
  BusConnection* session = connect();
  if (!session) return false;
  if (!waited_) {
    waited_ = true;
    session->wait(Steady::now() + firstAnswerWait);
  } else {
    session->pump();
  }
  return trusted_ && !session->isBroken();
}

void TrustWatch::enable() {
  if (BusConnection* session = connect()) {
    enableAccessibility(*session, [this] { ask(); });
    session->pump();
  }
}

BusConnection* TrustWatch::connect() {
  if (session_ && !session_->isBroken()) return session_.get();
  trusted_ = false;
  asking_ = false;
  askAgain_ = false;
  session_ = BusConnection::openSession();
  if (!session_) return nullptr;
  session_->subscribe(statusChangedRule, [this] { ask(); });
  session_->subscribe(statusOwnerChangedRule, [this] { ask(); });
  ask();
  return session_.get();
}

// One question at a time: signals that come while one is under way lead to one more.
void TrustWatch::ask() {
  if (asking_) {
    askAgain_ = true;
    return;
  }
  asking_ = true;
  askAgain_ = false;
  askAccessibilityStatus(*session_, [this](const AccessibilityStatus& status) {
    trusted_ = status.isEnabled && !status.busAddress.empty();
    asking_ = false;
    if (askAgain_ && !session_->isBroken()) ask();
  });
}

}  // namespace vellora
