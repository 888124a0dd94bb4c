#include "platform/linux/x11/window.h"

#include <utility>

#include "platform/linux/x11/x_panel.h"
#include "platform/linux/x11/x_session.h"
#include "platform/linux/x11/x_view.h"
#include "platform/linux/x11/x_workspace.h"

namespace vellora {

std::shared_ptr<XSession> makeXSession() { return std::make_shared<XSession>(nullptr); }

std::unique_ptr<Panel> makePanel(std::shared_ptr<XSession> session) {
  return std::make_unique<XPanel>(std::move(session));
}

std::unique_ptr<NativeView> makeView(std::shared_ptr<XSession> session) {
  return std::make_unique<XView>(std::move(session));
}

std::unique_ptr<Workspace> makeWorkspace(std::shared_ptr<XSession> session) {
  return std::make_unique<XWorkspace>(std::move(session));
}

}  // namespace vellora
