#pragma once

#include <memory>
#include <string>

#include "platform/linux/wayland/locator/asked_windows.h"
#include "platform/linux/wayland/locator/i3_connection.h"

namespace vellora {

// The windows of sway, and of others that speak i3's IPC on Wayland, by GET_TREE. Events tell of
// focus, of windows that come and go, of full screen and of workspaces, but not of windows that are
// moved, resized or laid out anew (seen with sway 1.7).
class I3Locator final : public AskedWindows {
 public:
  // `path` is the socket's.
  explicit I3Locator(std::string path);
  ~I3Locator() override = default;

  std::string name() const override { return "sway's IPC"; }

 private:
  bool open() override;
  bool putQuestion() override;
  void close() override { connection_.reset(); }
  void take(const I3Message& message);

  const std::string path_;
  std::unique_ptr<I3Connection> connection_;
};

}  // namespace vellora
