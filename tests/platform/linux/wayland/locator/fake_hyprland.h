#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// Hyprland's two sockets in the test's own loop, which answer as the test says. Main thread.
class FakeHyprland {
 public:
  explicit FakeHyprland(const std::string& folder);
  ~FakeHyprland();
  FakeHyprland(const FakeHyprland&) = delete;
  FakeHyprland& operator=(const FakeHyprland&) = delete;

  // By request; where there is none, the connection stays open without an answer.
  std::map<std::string, std::string> answers;
  // Sends bytes to everybody who listens to events.
  void say(std::string_view bytes);
  // Sends bytes to everybody who waits for an answer, as far as they are taken; how many.
  std::size_t pour(std::string_view bytes);
  // Closes the connections of those who listen.
  void hangUp();

  std::vector<std::string> asked;
  int listeners = 0;  // that have come so far

 private:
  struct Client {
    int fd;
    GSourcePtr source;
  };
  int listenAt(const std::string& path);
  void acceptListener();
  void acceptRequest();
  void answer(Client& client);

  std::vector<std::string> paths_;
  int eventSocket_;
  int requestSocket_;
  GSourcePtr acceptingListeners_;
  GSourcePtr acceptingRequests_;
  std::vector<int> listening_;
  std::vector<std::unique_ptr<Client>> clients_;
};

}  // namespace vellora
