#pragma once

#include <memory>

#include "platform/native_view.h"
#include "platform/panel.h"
#include "platform/workspace.h"

namespace vellora {

class XSession;

// Makes what this folder offers. All share one session; each keeps it alive. Main thread.

// The connection to the display that DISPLAY names. Never null: where no display answers within two
// seconds the session is absent, and everything made with it works without one.
std::shared_ptr<XSession> makeXSession();

// Hidden, unconfigured and without size.
std::unique_ptr<Panel> makePanel(std::shared_ptr<XSession> session);
std::unique_ptr<NativeView> makeView(std::shared_ptr<XSession> session);
std::unique_ptr<Workspace> makeWorkspace(std::shared_ptr<XSession> session);

}  // namespace vellora
