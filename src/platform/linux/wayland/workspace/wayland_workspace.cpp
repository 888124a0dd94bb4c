#include "platform/linux/wayland/workspace/wayland_workspace.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include "platform/linux/glib/deadline.h"
#include "platform/linux/glib/event_source.h"
#include "platform/linux/wayland/workspace/located_player.h"
#include "platform/linux/wayland/workspace/window_identity.h"
#include "platform/linux/window_system/window_owner.h"

namespace vellora {
namespace {

constexpr std::chrono::milliseconds firstAnswerWait(2000);

}  // namespace

WaylandWorkspace::WaylandWorkspace(std::unique_ptr<WindowLocator> locator, WaylandScreens screens,
                                   std::vector<PlayerDescriptionPtr> descriptions,
                                   std::shared_ptr<PlayerWindows> windows)
    : locator_(std::move(locator)),
      screens_(std::move(screens)),
      descriptions_(std::move(descriptions)),
      windows_(windows ? std::move(windows) : std::make_shared<PlayerWindows>()) {
  locator_->whenChanged([this] { update(); });
  update();
}

WaylandWorkspace::~WaylandWorkspace() { locator_->whenChanged(nullptr); }

std::shared_ptr<const RunningApplication> WaylandWorkspace::frontmostApplication() {
  const auto scales = [this](const Rect& place) {
    return std::pair(screens_.scaleUnder(place), screens_.largestScale());
  };
  if (frontPlace_ && scales(*frontPlace_) != frontScales_) update();
  return frontmost_;
}

void WaylandWorkspace::update() {
  const std::vector<LocatedWindow> all = locator_->windows();
  const auto front = locator_->frontWindow();
  frontmost_.reset();
  frontPlace_.reset();
  std::vector<std::int32_t> players;
  if (front) {
    const WindowIdentity identity = identityOf(*front, descriptions_);
    frontmost_ = std::make_shared<WindowOwner>(front->process, identity.identifier);
    if (identity.isPlayer()) {
      frontPlace_ = front->content;
      frontScales_ = {screens_.scaleUnder(front->content), screens_.largestScale()};
      PlayerWindow player = locatedPlayer(*front, all, identity.descriptions, frontScales_.first,
                                          frontScales_.second);
      players.push_back(front->process);
      windows_->bringToFront(std::move(player));
    }
  }
  for (const LocatedWindow& window : all) {
    if (std::ranges::count(players, window.process) > 0) continue;
    WindowIdentity identity = identityOf(window, descriptions_);
    if (!identity.isPlayer()) continue;
    players.push_back(window.process);
    windows_->note(locatedPlayer(window, all, std::move(identity.descriptions),
                                 screens_.scaleUnder(window.content), screens_.largestScale()));
  }
  windows_->keepOnly(players);
  locator_->setWatched(frontPlace_.has_value());
}

// For whoever asks before a loop has run, as the diagnosis does, which runs none.
void WaylandWorkspace::awaitFirstAnswer() {
  if (std::exchange(isAwaited_, true)) return;
  const Deadline deadline(firstAnswerWait);
  const GSourcePtr alarm = attachSource(
      g_timeout_source_new(static_cast<guint>(deadline.remainingMilliseconds())), [] {});
  while (!locator_->isKnown() && !deadline.passed()) g_main_context_iteration(nullptr, TRUE);
}

std::vector<std::shared_ptr<const RunningApplication>> WaylandWorkspace::runningApplications(
    std::string_view bundleIdentifier) {
  awaitFirstAnswer();
  std::vector<std::shared_ptr<const RunningApplication>> found;
  std::set<std::int32_t> seen;
  for (const LocatedWindow& window : locator_->windows()) {
    WindowIdentity identity = identityOf(window, descriptions_);
    if (identity.identifier != bundleIdentifier || !seen.insert(window.process).second) continue;
    found.push_back(std::make_shared<WindowOwner>(window.process, std::move(identity.identifier)));
  }
  return found;
}

std::optional<double> WaylandWorkspace::primaryScreenHeight() { return screens_.primaryHeight(); }

std::optional<double> WaylandWorkspace::mainScreenScale() { return screens_.primaryScale(); }

}  // namespace vellora
