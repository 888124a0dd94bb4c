#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/asked_windows.h"

namespace vellora {

// The windows of Hyprland, by its two sockets: one that tells of events, each in a line, and one
// that takes a request a connection, answers and ends it. Events tell of focus, of windows that
// come and go, of full screen and of workspaces, but not of windows that are moved or resized.
// Hyprland does nothing else between a connection and its request, so that the one follows the
// other at once.
class HyprlandLocator final : public AskedWindows {
 public:
  // `folder` has the sockets.
  explicit HyprlandLocator(std::string folder);
  ~HyprlandLocator() override;
  HyprlandLocator(const HyprlandLocator&) = delete;
  HyprlandLocator& operator=(const HyprlandLocator&) = delete;

  std::string name() const override { return "Hyprland's sockets"; }

  // The folder of this session's sockets, as the environment names it and somebody takes
  // connections in it; else empty.
  static std::string servedFolder();

 private:
  static constexpr std::array requests{"j/monitors", "j/clients", "j/activewindow"};

  bool open() override;
  bool putQuestion() override;
  void close() override;
  bool putRequest();
  void readEvents();
  void readAnswer();
  void dropRequest();

  const std::string folder_;
  int events_ = -1;
  GSourcePtr eventSource_;
  int request_ = -1;
  GSourcePtr requestSource_;
  std::size_t current_ = 0;  // among the requests
  std::array<std::string, requests.size()> answers_;
};

}  // namespace vellora
