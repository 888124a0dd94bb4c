#include "platform/linux/accessibility/linux_accessibility.h"

#include <chrono>
#include <cstdio>
#include <utility>

#include "platform/linux/accessibility/bus_elements.h"
#include "platform/linux/accessibility/reading_connection.h"
#include "platform/linux/accessibility/status_watch.h"
#include "platform/linux/glib/event_source.h"

namespace vellora {

namespace {

constexpr const char* advice =
    "Vellora: switching on accessibility for this session. If no captions appear, start the player "
    "again (Qt programs look for accessibility only at their start), and see that the package "
    "at-spi2-core is installed.\n";

constexpr const char* noBus =
    "Vellora: there is no session bus, so no player can be read until there is one.\n";

constexpr Steady::duration firstAnswerWait = std::chrono::milliseconds(250);

// A player in front is read eight times a second, so a connection that has rested this long is not
// needed soon.
constexpr guint longestRest = 2;  // seconds

class LinuxAccessibility final : public Accessibility {
 public:
  LinuxAccessibility(Steady::duration longestMemory, std::shared_ptr<const PlayerWindows> windows)
      : windows_(std::move(windows)),
        connections_(std::make_shared<ConnectionSlot>(longestMemory)),
        // The source has a share of its own: it may be at work when this object goes on another
        // thread.
        resting_(
            attachSource(g_timeout_source_new_seconds(longestRest), [connections = connections_] {
              connections->closeRested(std::chrono::seconds(longestRest));
            })) {}
  LinuxAccessibility(const LinuxAccessibility&) = delete;
  LinuxAccessibility& operator=(const LinuxAccessibility&) = delete;

  bool isTrusted() override {
    return watch_.status(firstAnswerWait, Steady::duration::zero()).isUsable();
  }

  void requestTrust() override { std::fputs(watch_.enable() ? advice : noBus, stderr); }

  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t processIdentifier,
                                                           const Player& player,
                                                           const ReadingLimits& limits) override {
    return makeApplicationElement(connections_, windows_, processIdentifier, player, limits);
  }

 private:
  StatusWatch watch_;
  const std::shared_ptr<const PlayerWindows> windows_;
  // Shared with the readings, which may outlive this object.
  const std::shared_ptr<ConnectionSlot> connections_;
  const GSourcePtr resting_;
};

}  // namespace

std::shared_ptr<Accessibility> makeLinuxAccessibility(
    Steady::duration longestMemory, std::shared_ptr<const PlayerWindows> windows) {
  return std::make_shared<LinuxAccessibility>(longestMemory, std::move(windows));
}

}  // namespace vellora
