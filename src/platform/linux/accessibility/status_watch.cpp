#include "platform/linux/accessibility/status_watch.h"

#include <string_view>
#include <utility>

namespace vellora {

AccessibilityStatus StatusWatch::status(Steady::duration first, Steady::duration later) {
  BusConnection* session = connect();
  if (session == nullptr) return {};
  session->pump();
  const Steady::duration patience = std::exchange(waited_, true) ? later : first;
  const auto deadline = Steady::now() + patience;
  do {
    if (failures_ == 1 && !asking_) ask();
    if (!asking_ || patience <= Steady::duration::zero()) break;
    session->wait(deadline);
  } while (failures_ == 1 && !asking_ && !session->isBroken());
  if (session->isBroken()) return {};
  return status_;
}

bool StatusWatch::enable() {
  BusConnection* session = connect();
  enabling_ = true;
  if (session == nullptr) return false;
  enableAccessibility(*session, [this] { ask(); });
  session->pump();
  return true;
}

BusConnection* StatusWatch::connect() {
  if (session_ && !session_->isBroken()) return session_.get();
  status_ = {};
  asking_ = false;
  askAgain_ = false;
  failures_ = 0;
  session_ = BusConnection::openSession();
  if (!session_) return nullptr;
  session_->subscribe(statusChangedRule, [this](sd_bus_message*) { askAnew(); });
  session_->subscribe(statusOwnerChangedRule,
                      [this](sd_bus_message* changed) { noteOwner(changed); });
  ask();
  if (enabling_) enableAccessibility(*session_, [this] { ask(); });
  return session_.get();
}

// A service that was switched on and has ended is started again.
void StatusWatch::noteOwner(sd_bus_message* changed) {
  const char* owner = nullptr;
  const bool ended = sd_bus_message_read(changed, "sss", nullptr, nullptr, &owner) > 0 &&
                     std::string_view(owner).empty();
  if (ended && enabling_) enableAccessibility(*session_, [this] { ask(); });
  askAnew();
}

void StatusWatch::askAnew() {
  failures_ = 0;
  ask();
}

// One question at a time: signals that come while one is under way lead to one more.
void StatusWatch::ask() {
  if (asking_) {
    askAgain_ = true;
    return;
  }
  asking_ = true;
  askAgain_ = false;
  askAccessibilityStatus(*session_, [this](const std::optional<AccessibilityStatus>& status) {
    status_ = status.value_or(AccessibilityStatus());
    failures_ = status ? 0 : failures_ + 1;
    asking_ = false;
    if (askAgain_ && !session_->isBroken()) ask();
  });
}

}  // namespace vellora
