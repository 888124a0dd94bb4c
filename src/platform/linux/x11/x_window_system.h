#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/window_system/window_system.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {

// The window system of an X server. Main thread.
class XWindowSystem final : public WindowSystem, private XEventListener {
 public:
  explicit XWindowSystem(std::shared_ptr<XSession> session);
  ~XWindowSystem() override;

  bool present() const override { return session_->present(); }
  std::unique_ptr<Workspace> makeWorkspace(std::vector<PlayerDescriptionPtr> descriptions,
                                           std::shared_ptr<PlayerWindows> windows) override;
  // In no window it has the scale of the server's screens.
  std::unique_ptr<NativeView> makeView() override;
  std::unique_ptr<Panel> makePanel() override;
  void whenLost(std::function<void()> lost) override;

 private:
  void handleEvent(const xcb_generic_event_t&) override {}
  void sessionLost() override;

  std::shared_ptr<XSession> session_;
  std::function<void()> lost_;
};

}  // namespace vellora
