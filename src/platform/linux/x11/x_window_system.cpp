#include "platform/linux/x11/x_window_system.h"

#include <utility>

#include "platform/linux/window_system/hosted_view.h"
#include "platform/linux/x11/screen_metrics.h"
#include "platform/linux/x11/x_panel.h"
#include "platform/linux/x11/x_workspace.h"

namespace vellora {

XWindowSystem::XWindowSystem(std::shared_ptr<XSession> session) : session_(std::move(session)) {
  session_->addListener(*this);
}

XWindowSystem::~XWindowSystem() { session_->removeListener(*this); }

std::unique_ptr<Workspace> XWindowSystem::makeWorkspace(
    std::vector<PlayerDescriptionPtr> descriptions, std::shared_ptr<PlayerWindows> windows) {
  return std::make_unique<XWorkspace>(session_, std::move(descriptions), std::move(windows));
}

std::unique_ptr<NativeView> XWindowSystem::makeView() {
  return std::make_unique<HostedView>([session = session_] { return session->metrics().scale(); });
}

std::unique_ptr<Panel> XWindowSystem::makePanel() { return std::make_unique<XPanel>(session_); }

void XWindowSystem::whenLost(std::function<void()> lost) { lost_ = std::move(lost); }

void XWindowSystem::sessionLost() {
  if (lost_) std::exchange(lost_, nullptr)();
}

}  // namespace vellora
