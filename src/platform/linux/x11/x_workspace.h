#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/players/player_windows.h"
#include "platform/linux/x11/client_area.h"
#include "platform/linux/x11/player_listing.h"
#include "platform/linux/x11/window_program.h"
#include "platform/linux/x11/x_session.h"
#include "platform/workspace.h"

namespace vellora {

// The desktop by what the window manager and the windows say of themselves (EWMH 1.5, ICCCM 2.0). A
// window's program is its _NET_WM_PID. Its bundle identifier is the player's where a description
// names the window's class or application identifier; otherwise it is what bundleIdentifierOf
// finds. Players' windows are kept in a directory for others, also while nobody asks for anything,
// and where the one in front is, when that is asked for. A
// shaded window may keep the keyboard; like a hidden one it counts as minimised, so that nothing is
// in front then. What is frontmost, and where it is, is asked once and again when the server says
// that it changed. Main thread.
class XWorkspace final : public Workspace, private XEventListener {
 public:
  // `windows` is the directory, which nobody else writes; null: nobody reads it.
  explicit XWorkspace(std::shared_ptr<XSession> session,
                      std::vector<PlayerDescriptionPtr> descriptions = {},
                      std::shared_ptr<PlayerWindows> windows = nullptr);
  ~XWorkspace() override;

  std::shared_ptr<const RunningApplication> frontmostApplication() override;
  // The one whose window is active comes first, then those whose windows lie higher. The players
  // found are noted in the directory with the places of their windows.
  std::vector<std::shared_ptr<const RunningApplication>> runningApplications(
      std::string_view bundleIdentifier) override;
  std::optional<double> primaryScreenHeight() override;
  std::optional<double> mainScreenScale() override;

 private:
  void handleEvent(const xcb_generic_event_t& event) override;
  void lookForAnswers() override;
  void sessionLost() override;
  void readFrontmost();
  void setFrontmost(const WindowProgram& program);
  void placeFrontPlayer();
  // Which windows there are, in the order of runningApplications.
  std::vector<xcb_window_t> listWindows();

  std::shared_ptr<XSession> session_;
  const std::vector<PlayerDescriptionPtr> descriptions_;
  const std::shared_ptr<PlayerWindows> windows_;
  PlayerListing listing_;
  std::shared_ptr<const RunningApplication> frontmost_;
  xcb_window_t activeWindow_ = XCB_WINDOW_NONE;
  bool frontmostKnown_ = false;
  ClientArea area_;                          // of the player in front
  std::optional<PlayerWindow> frontPlayer_;  // as the directory has it
};

}  // namespace vellora
