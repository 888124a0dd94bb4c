#include "platform/linux/accessibility/status_watch.h"

#include <utility>

namespace vellora {

AccessibilityStatus StatusWatch::status(Steady::duration first, Steady::duration later) {
  BusConnection* session = connect();
  if (session == nullptr) return {};
  session->pump();
  const Steady::duration patience = std::exchange(waited_, true) ? later : first;
  if (asking_ && patience > Steady::duration::zero()) session->wait(Steady::now() + patience);
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
