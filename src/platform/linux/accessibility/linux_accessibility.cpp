#include "platform/linux/accessibility/linux_accessibility.h"

#include <chrono>
#include <cstdio>

#include "platform/linux/accessibility/bus_elements.h"
#include "platform/linux/accessibility/reading_connection.h"
#include "platform/linux/accessibility/trust_watch.h"

namespace vellora {

namespace {

constexpr const char* advice =
    "Vellora: switching on accessibility for this session. If no captions appear, start the player "
    "again (Qt programs look for accessibility only at their start), and see that the package "
    "at-spi2-core is installed.\n";

class LinuxAccessibility final : public Accessibility {
 public:
  bool isTrusted() override { return watch_.isTrusted(); }

  void requestTrust() override {
    watch_.enable();
    std::fputs(advice, stderr);
  }

  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processIdentifier,
                                                           float messagingTimeout) override {
    const auto timeout = std::chrono::duration_cast<Steady::duration>(
        std::chrono::duration<float>(messagingTimeout));
    return makeApplicationElement(connections_, processIdentifier, timeout);
  }

 private:
  TrustWatch watch_;
  // Shared with the readings, which may outlive this object.
  const std::shared_ptr<ConnectionSlot> connections_ = std::make_shared<ConnectionSlot>();
};

}  // namespace

std::shared_ptr<Accessibility> makeLinuxAccessibility() {
  return std::make_shared<LinuxAccessibility>();
}

}  // namespace vellora
