#include "platform/linux/accessibility/reading_connection.h"

#include <utility>

#include "platform/linux/accessibility/status_query.h"

namespace vellora {

BusConnection* ReadingConnection::prepare(Steady::duration timeout, Steady::time_point deadline) {
  if (!session_ || session_->isBroken()) session_ = BusConnection::openSession();
  if (!session_) return nullptr;
  session_->setTimeout(timeout);

  AccessibilityStatus status;
  askAccessibilityStatus(*session_,
                         [&status](const AccessibilityStatus& found) { status = found; });
  session_->exchange(deadline);
  if (!status.isEnabled || status.busAddress.empty()) return nullptr;

  if (!bus_ || bus_->isBroken() || address_ != status.busAddress) {
    bus_ = BusConnection::open(status.busAddress);
    address_ = status.busAddress;
  }
  if (bus_) bus_->setTimeout(timeout);
  return bus_.get();
}

std::unique_ptr<ReadingConnection> ConnectionSlot::take() {
  const std::lock_guard lock(mutex_);
  return kept_ ? std::move(kept_) : std::make_unique<ReadingConnection>();
}

void ConnectionSlot::keep(std::unique_ptr<ReadingConnection> connection) {
  const std::lock_guard lock(mutex_);
  kept_ = std::move(connection);
}

}  // namespace vellora
