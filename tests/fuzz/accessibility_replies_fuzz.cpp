#include <memory>
#include <string>

#include <sys/socket.h>
#include <unistd.h>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "fuzz/raw_message.h"
#include "platform/linux/accessibility/accessible_replies.h"
#include "platform/linux/accessibility/bus_handles.h"
#include "platform/linux/accessibility/element_replies.h"

namespace vellora {

namespace {

template <typename Result, typename... More>
void readAgain(sd_bus_message* message, Result (*read)(sd_bus_message*, More...), More... more) {
  require(sd_bus_message_rewind(message, 1) >= 0, "a message that can be read from its beginning");
  read(message, more...);
}

// Every reader, whatever the message is.
int readAll(sd_bus_message* message, void* count, sd_bus_error*) {
  ++*static_cast<int*>(count);
  readAgain(message, readNumber);
  readAgain(message, readText);
  readAgain(message, readStates);
  readAgain<std::optional<AccessibleExtents>>(message, readExtents);
  readAgain(message, readRangeExtents);
  readAgain(message, readTextProperty);
  readAgain(message, readCountProperty);
  readAgain(message, readAllProperties);
  readAgain(message, readReference);
  readAgain(message, readAttributes);
  readAgain(message, readAddress);
  readAgain(message, readReferenceProperty);
  require(sd_bus_message_rewind(message, 1) >= 0, "a message that can be read once more");
  const auto references = readReferences(message, 5);
  require(!references || references->size() <= 5, "as many references as asked for");
  return 1;
}

// A connection whose other end says what the test writes.
class Line {
 public:
  Line() {
    int ends[2] = {-1, -1};
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0, "a pair of sockets");
    peer_ = ends[1];
    sd_bus* made = nullptr;
    require(sd_bus_new(&made) >= 0, "a connection");
    bus_.reset(made);
    require(sd_bus_set_fd(made, ends[0], ends[0]) >= 0, "a connection's socket");
    require(sd_bus_add_filter(made, nullptr, readAll, &read_) >= 0, "a filter");
    require(sd_bus_negotiate_fds(made, 0) >= 0, "a connection without descriptors");
    require(sd_bus_start(made) >= 0, "a connection that starts");
    // The answers to AUTH EXTERNAL and DATA, which sd-bus sends without waiting between them.
    write("DATA\r\nOK 0123456789abcdef0123456789abcdef\r\n");
    require(take(RawMessage::signal("u", {"\x2b\0\0\0", 4})), "a message that arrives");
  }
  ~Line() {
    bus_.reset();
    close(peer_);
  }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  // False when the connection is lost, as it is after a message that is none.
  bool take(std::string_view message) {
    write(message);
    char ignored[4096];
    while (recv(peer_, ignored, sizeof ignored, MSG_DONTWAIT) > 0) continue;
    const int before = read_;
    for (int i = 0; i < 20 && read_ == before; ++i) {
      if (sd_bus_process(bus_.get(), nullptr) < 0) return false;
    }
    return read_ > before;
  }

 private:
  void write(std::string_view bytes) {
    require(send(peer_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) ==
                static_cast<ssize_t>(bytes.size()),
            "room in a socket");
  }

  int peer_ = -1;
  int read_ = 0;
  BusPtr bus_;
};

}  // namespace

// The first line is the message's signature, the rest its body.
void fuzzAccessibilityReplies(std::string_view bytes) {
  static std::unique_ptr<Line> line;
  FuzzInput input(bytes.substr(0, 60'000));
  const std::string_view signature = input.takeUntil('\n').substr(0, 255);
  if (!line) line = std::make_unique<Line>();
  if (!line->take(RawMessage::signal(signature, input.rest()))) line.reset();
}

}  // namespace vellora
