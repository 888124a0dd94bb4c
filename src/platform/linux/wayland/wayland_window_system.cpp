#include "platform/linux/wayland/wayland_window_system.h"

#include <utility>

#include "platform/linux/wayland/panel/wayland_panel.h"
#include "platform/linux/wayland/workspace/wayland_workspace.h"
#include "platform/linux/window_system/hosted_view.h"

namespace vellora {
namespace {

// For whom nobody tells anything.
class NoLocator final : public WindowLocator {
 public:
  std::string name() const override { return "nothing"; }
  bool isKnown() const override { return true; }  // there will be no more
  std::optional<LocatedWindow> frontWindow() const override { return std::nullopt; }
  std::vector<LocatedWindow> windows() const override { return {}; }
  void whenChanged(std::function<void()>) override {}
  void setWatched(bool) override {}
};

WaylandScreens screensOf(const std::shared_ptr<WaylandSession>& session) {
  return {[session] { return session->layout().primaryHeight(); },
          [session] { return session->layout().primaryScale(); },
          [session] { return session->layout().largestScale(); },
          [session](const Rect& place) {
            const Output* const output = session->layout().under(place, 0);
            return output == nullptr ? session->layout().primaryScale().value_or(1) : output->scale;
          }};
}

}  // namespace

WaylandWindowSystem::WaylandWindowSystem(std::shared_ptr<WaylandSession> session,
                                         std::unique_ptr<WindowLocator> locator)
    : session_(std::move(session)), locator_(std::move(locator)) {
  session_->addListener(*this);
}

WaylandWindowSystem::~WaylandWindowSystem() { session_->removeListener(*this); }

std::unique_ptr<Workspace> WaylandWindowSystem::makeWorkspace(
    std::vector<PlayerDescriptionPtr> descriptions, std::shared_ptr<PlayerWindows> windows) {
  auto locator = std::exchange(locator_, nullptr);
  if (!locator) locator = std::make_unique<NoLocator>();
  return std::make_unique<WaylandWorkspace>(std::move(locator), screensOf(session_),
                                            std::move(descriptions), std::move(windows));
}

std::unique_ptr<NativeView> WaylandWindowSystem::makeView() {
  return std::make_unique<HostedView>(
      [session = session_] { return session->layout().primaryScale(); });
}

std::unique_ptr<Panel> WaylandWindowSystem::makePanel() {
  return std::make_unique<WaylandPanel>(session_);
}

void WaylandWindowSystem::whenLost(std::function<void()> lost) { lost_ = std::move(lost); }

void WaylandWindowSystem::sessionLost() {
  if (lost_) std::exchange(lost_, nullptr)();
}

}  // namespace vellora
