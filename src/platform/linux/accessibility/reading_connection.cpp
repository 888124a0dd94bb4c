#include "platform/linux/accessibility/reading_connection.h"

#include <utility>

namespace vellora {

std::optional<ReadingConnection::Access> ReadingConnection::prepare(std::int32_t processIdentifier,
                                                                    Steady::duration timeout) {
  const AccessibilityStatus status = status_.status(timeout, timeout);
  if (!status.isUsable()) return std::nullopt;
  if (!bus_ || bus_->isBroken() || address_ != status.busAddress) {
    memory_.reset();
    described_.reset();
    bus_ = BusConnection::open(status.busAddress);
    address_ = status.busAddress;
  }
  if (!bus_) return std::nullopt;
  bus_->setTimeout(timeout);
  if (!memory_ || memory_->processIdentifier() != processIdentifier) {
    memory_ = std::make_unique<ProgramMemory>(*bus_, processIdentifier, longestMemory_);
    described_ = std::make_unique<DescribedMemory>(processIdentifier);
  }
  return Access{*bus_, *memory_, *described_};
}

void ConnectionReturner::operator()(ReadingConnection* connection) const {
  slot->keep(std::unique_ptr<ReadingConnection>(connection));
}

LentConnection ConnectionSlot::lend() {
  const std::lock_guard lock(mutex_);
  auto connection = kept_ ? std::move(kept_) : std::make_unique<ReadingConnection>(longestMemory_);
  return LentConnection(connection.release(), ConnectionReturner{shared_from_this()});
}

void ConnectionSlot::keep(std::unique_ptr<ReadingConnection> connection) {
  const std::lock_guard lock(mutex_);
  kept_.swap(connection);  // what was kept is closed when the lock is free again
  keptSince_ = Steady::now();
}

void ConnectionSlot::closeRested(Steady::duration rest) {
  std::unique_ptr<ReadingConnection> rested;  // closed when the lock is free again
  const std::lock_guard lock(mutex_);
  if (kept_ && Steady::now() - keptSince_ >= rest) rested = std::move(kept_);
}

}  // namespace vellora
