#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/workspace.h"
#include "support/log.h"

namespace vellora {

struct FakeRunningApplication final : RunningApplication {
  FakeRunningApplication(std::optional<std::string> identifier_, std::int32_t pid_)
      : identifier(std::move(identifier_)), pid(pid_) {}

  std::optional<std::string> bundleIdentifier() const override { return identifier; }
  std::int32_t processIdentifier() const override { return pid; }

  std::optional<std::string> identifier;
  std::int32_t pid;
};

// A desktop with one screen, no running programs and nothing in front until the test says so. Logs
// each question about programs.
class FakeWorkspace final : public Workspace {
 public:
  explicit FakeWorkspace(Log& log) : log_(log) {}

  std::shared_ptr<const RunningApplication> frontmostApplication() override {
    log_.push_back("frontmost?");
    return frontmost;
  }
  std::vector<std::shared_ptr<const RunningApplication>> runningApplications(
      std::string_view bundleIdentifier) override {
    log_.push_back("running " + std::string(bundleIdentifier) + "?");
    std::vector<std::shared_ptr<const RunningApplication>> found;
    for (const auto& application : running) {
      if (application->identifier == bundleIdentifier) found.push_back(application);
    }
    return found;
  }
  std::optional<double> primaryScreenHeight() override { return primaryHeight; }
  std::optional<double> mainScreenScale() override { return mainScale; }

  std::shared_ptr<FakeRunningApplication> frontmost;
  std::vector<std::shared_ptr<FakeRunningApplication>> running;
  std::optional<double> primaryHeight = 1000.0;
  std::optional<double> mainScale = 1.0;

 private:
  Log& log_;
};

}  // namespace vellora
