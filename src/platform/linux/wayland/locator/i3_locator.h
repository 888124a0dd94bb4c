#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/i3_connection.h"
#include "platform/linux/wayland/locator/known_windows.h"

namespace vellora {

// The windows of sway, and of others that speak i3's IPC on Wayland, by GET_TREE: asked at the
// start and after each event of windows, workspaces and outputs. No more than one question is under
// way, and one remembered. Events tell of focus, of windows that come and go, of full screen and of
// workspaces, but not of windows that are moved, resized or laid out anew (seen with sway 1.7): so
// the tree is also asked twice a second while somebody depends on places, and ten times a second
// while they change.
//
// After two seconds without an answer nothing is known until it comes. A peer that is gone, or that
// says what no such compositor says, is connected to again after 0.1 s, then in growing intervals,
// at last every second.
class I3Locator final : public KnownWindows {
 public:
  // `path` is the socket's.
  explicit I3Locator(std::string path);
  ~I3Locator() override = default;

  std::string name() const override { return "sway's IPC"; }
  void setWatched(bool isWatched) override;

 private:
  using Clock = std::chrono::steady_clock;

  void connect();
  void reconnectLater();
  void take(const I3Message& message);
  void takeTree(const std::string& json);
  void ask();
  void askSoon();
  void askAgainLater();

  const std::string path_;
  std::unique_ptr<I3Connection> connection_;
  std::chrono::milliseconds patience_;  // until the next attempt to connect
  bool isWatched_ = false;
  bool isAsked_ = false;       // a question is under way
  bool isAskedAgain_ = false;  // and another is to follow
  Clock::time_point asked_{};
  Clock::time_point moved_{};  // when places changed last
  GSourcePtr connecting_;
  GSourcePtr silence_;
  GSourcePtr next_;
};

}  // namespace vellora
