#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/i3_message.h"

namespace vellora {

// A compositor's IPC socket in the test's own loop, which answers as the test says. Main thread.
class FakeI3 {
 public:
  explicit FakeI3(std::string path);
  ~FakeI3();
  FakeI3(const FakeI3&) = delete;
  FakeI3& operator=(const FakeI3&) = delete;

  // The bytes that answer GET_TREE; empty: no answer. The one given answers with `tree`.
  std::function<std::string()> answer = [this] {
    return encodeI3Message(I3Message::getTree, tree);
  };
  std::string tree;

  // Sends bytes to everybody who is connected.
  void say(std::string_view bytes);
  void sayEvent(std::string_view json = R"({"change":"focus"})");
  // Closes all connections, and goes on listening.
  void hangUp();

  int connectionsMade = 0;
  int treesAsked = 0;
  std::vector<std::string> subscriptions;

 private:
  struct Client {
    int fd;
    I3MessageReader reader;
    GSourcePtr source;
  };
  void accept();
  void read(Client& client);

  const std::string path_;
  int listening_ = -1;
  GSourcePtr accepting_;
  std::vector<std::unique_ptr<Client>> clients_;
};

}  // namespace vellora
