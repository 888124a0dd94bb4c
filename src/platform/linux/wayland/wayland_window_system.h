#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/wayland/locator/window_locator.h"
#include "platform/linux/wayland/session/wayland_session.h"
#include "platform/linux/window_system/window_system.h"

namespace vellora {

// The window system of a Wayland compositor. Main thread.
class WaylandWindowSystem final : public WindowSystem, private WaylandListener {
 public:
  // `locator` tells the first workspace made what is in front and where; null: nobody knows. The
  // workspaces after that know nothing.
  WaylandWindowSystem(std::shared_ptr<WaylandSession> session,
                      std::unique_ptr<WindowLocator> locator);
  ~WaylandWindowSystem() override;

  bool present() const override { return session_->present(); }
  std::unique_ptr<Workspace> makeWorkspace(std::vector<PlayerDescriptionPtr> descriptions,
                                           std::shared_ptr<PlayerWindows> windows) override;
  // In no window it has the primary output's scale.
  std::unique_ptr<NativeView> makeView() override;
  std::unique_ptr<Panel> makePanel() override;
  void whenLost(std::function<void()> lost) override;

 private:
  void sessionLost() override;

  std::shared_ptr<WaylandSession> session_;
  std::unique_ptr<WindowLocator> locator_;
  std::function<void()> lost_;
};

}  // namespace vellora
