#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "platform/linux/glib/session_bus.h"

namespace vellora {

// Calls over a connection whose answers come from the loop, or not at all once this object is gone.
// Main thread.
class BusCalls {
 public:
  explicit BusCalls(SessionBus bus) : bus_(std::move(bus)) {}
  BusCalls(const BusCalls&) = delete;
  BusCalls& operator=(const BusCalls&) = delete;

  GDBusConnection* bus() const { return bus_.get(); }

  struct Method {
    const char* service;
    const char* path;
    const char* interface;
    const char* name;
  };

  // `arguments` is a floating tuple. The answer is a tuple of `type`, or null where none came in
  // time or it was another.
  void call(const Method& method, GVariant* arguments, const GVariantType* type,
            std::chrono::milliseconds timeout, std::function<void(GVariant* answer)> answered);

 private:
  SessionBus bus_;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace vellora
