#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/workspace.h"

namespace vellora {

// A program by what is known of it from a window. Any thread.
class WindowOwner final : public RunningApplication {
 public:
  // `process` is positive; without an identifier it is no player.
  WindowOwner(std::int32_t process, std::optional<std::string> identifier)
      : process_(process), identifier_(std::move(identifier)) {}

  std::optional<std::string> bundleIdentifier() const override { return identifier_; }
  std::int32_t processIdentifier() const override { return process_; }

 private:
  std::int32_t process_;
  std::optional<std::string> identifier_;
};

}  // namespace vellora
