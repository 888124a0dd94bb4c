#include "platform/linux/accessibility/status_watch.h"

namespace vellora {

AccessibilityStatus StatusWatch::status(Steady::duration patience) {
  BusConnection* session = connect();
  if (!session) return {};
  if (!waited_) {
    waited_ = true;
    session->wait(Steady::now() + patience);
  } else {
    session->pump();
  }
  if (session->isBroken()) return {};
  return status_;
}

void StatusWatch::enable() {
  if (BusConnection* session = connect()) {
    enableAccessibility(*session, [this] { ask(); });
    session->pump();
  }
}

BusConnection* StatusWatch::connect() {
  if (session_ && !session_->isBroken()) return session_.get();
  status_ = {};
  asking_ = false;
  askAgain_ = false;
  session_ = BusConnection::openSession();
  if (!session_) return nullptr;
  session_->subscribe(statusChangedRule, [this](sd_bus_message*) { ask(); });
  session_->subscribe(statusOwnerChangedRule, [this](sd_bus_message*) { ask(); });
  ask();
  return session_.get();
}

// One question at a time: signals that come while one is under way lead to one more.
void StatusWatch::ask() {
  if (asking_) {
    askAgain_ = true;
    return;
  }
  asking_ = true;
  askAgain_ = false;
  askAccessibilityStatus(*session_, [this](const AccessibilityStatus& status) {
    status_ = status;
    asking_ = false;
    if (askAgain_ && !session_->isBroken()) ask();
  });
}

}  // namespace vellora
