#include "platform/linux/accessibility/reading_connection.h"

#include <utility>

namespace vellora {

BusConnection* ReadingConnection::prepare(std::int32_t processIdentifier,
                                          Steady::duration timeout) {
  const AccessibilityStatus status = status_.status(timeout);
  if (!status.isUsable()) return nullptr;
  if (!bus_ || bus_->isBroken() || address_ != status.busAddress ||
      memory_->processIdentifier() != processIdentifier) {
    bus_ = BusConnection::open(status.busAddress);
    address_ = status.busAddress;
    memory_ = std::make_unique<ProgramMemory>(processIdentifier, longestMemory_);
  }
  if (bus_) bus_->setTimeout(timeout);
  return bus_.get();
}

std::unique_ptr<ReadingConnection> ConnectionSlot::take() {
  const std::lock_guard lock(mutex_);
  return kept_ ? std::move(kept_) : std::make_unique<ReadingConnection>(longestMemory_);
}

void ConnectionSlot::keep(std::unique_ptr<ReadingConnection> connection) {
  const std::lock_guard lock(mutex_);
  kept_ = std::move(connection);
  keptSince_ = Steady::now();
}

void ConnectionSlot::closeRested(Steady::duration rest) {
  std::unique_ptr<ReadingConnection> rested;  // closed when the lock is free again
  const std::lock_guard lock(mutex_);
  if (kept_ && Steady::now() - keptSince_ >= rest) rested = std::move(kept_);
}

}  // namespace vellora
