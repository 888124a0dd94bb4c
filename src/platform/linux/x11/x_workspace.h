#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/x11/x_session.h"
#include "platform/workspace.h"

namespace vellora {

// The desktop by what the window manager and the windows say of themselves (EWMH 1.5, ICCCM 2.0):
// a window's program is its _NET_WM_PID, unless WM_CLIENT_MACHINE names another host; its bundle
// identifier is the first of _GTK_APPLICATION_ID, the class part and the instance part of WM_CLASS
// that has the form of an application identifier ("com.apple.Music"). A shaded window may keep the
// keyboard; like a hidden one it counts as minimised, so that nothing is in front then. What is
// frontmost is asked once and again when the server says that it changed. Main thread.
class XWorkspace final : public Workspace, private XEventListener {
 public:
  explicit XWorkspace(std::shared_ptr<XSession> session);
  ~XWorkspace() override;

  std::shared_ptr<const RunningApplication> frontmostApplication() override;
  std::vector<std::shared_ptr<const RunningApplication>> runningApplications(
      std::string_view bundleIdentifier) override;
  std::optional<double> primaryScreenHeight() override;
  std::optional<double> mainScreenScale() override;

 private:
  void handleEvent(const xcb_generic_event_t& event) override;
  void sessionLost() override;
  void readFrontmost();

  std::shared_ptr<XSession> session_;
  std::shared_ptr<const RunningApplication> frontmost_;
  xcb_window_t activeWindow_ = XCB_WINDOW_NONE;
  bool frontmostKnown_ = false;
};

// The part of WM_CLASS, or the application identifier beside it, that names the program as above.
// `wmClass` is the property's value: instance and class, each ended by a zero byte.
std::optional<std::string> bundleIdentifierOf(std::string_view gtkApplicationId,
                                              std::string_view wmClass);

}  // namespace vellora
