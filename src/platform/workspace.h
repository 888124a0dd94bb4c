#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// A program that runs in this session. Values never change after it was made. Any thread.
class RunningApplication {
 public:
  virtual ~RunningApplication() = default;

  // Such as "com.apple.Music"; nothing when the program has none.
  virtual std::optional<std::string> bundleIdentifier() const = 0;
  virtual std::int32_t processIdentifier() const = 0;
};

// The desktop as the user sees it. Main thread; every call returns at once.
class Workspace {
 public:
  virtual ~Workspace() = default;

  // The program whose window has the keyboard; null when there is none.
  virtual std::shared_ptr<const RunningApplication> frontmostApplication() = 0;

  // Every running program with that identifier, in the system's order.
  virtual std::vector<std::shared_ptr<const RunningApplication>> runningApplications(
      std::string_view bundleIdentifier) = 0;

  // Height in points of the first screen of the system's list; nothing when the list is empty.
  virtual std::optional<double> primaryScreenHeight() = 0;

  // Pixels per point of the main screen; nothing when there is none.
  virtual std::optional<double> mainScreenScale() = 0;
};

}  // namespace vellora
