// What the overlay's duties take at the very least. As often as it ticks this reads
// FOLDER/snapshot.json. With --listen it also asks the player of the session what it plays every
// fifth time, and writes FOLDER/nowplaying.json anew, as a whole. With a PLAYER (a process) it
// reads that one's window at each tick: its state behind the signals of the accessibility bus and
// the places of sixteen rows, and all objects anew in turn, each within a second, for the changes
// that are not signalled. Where rows have moved, ready-made pictures move with them. No answer is
// understood, no text is looked up, laid out or painted. Until it is ended.
//
//   least_follower FOLDER [--listen [PLAYER]]
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include "least_panel.h"
#include "wire_floor.h"

namespace {

namespace wire = vellora::wire;

constexpr std::int64_t tick = 120'000'000;  // nanoseconds
constexpr std::size_t ticksToRenew = 7;     // all objects
constexpr std::uint64_t ticksToListen = 5;
constexpr std::size_t rowsInView = 16;

// A timer that is due at each tick; -1 where there is none.
int startTicking() {
  const int timer = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
  const itimerspec each{{0, tick}, {0, tick}};
  return timer < 0 || timerfd_settime(timer, 0, &each, nullptr) != 0 ? -1 : timer;
}

bool readFile(const std::string& path) {
  static std::array<char, 1 << 16> bytes;
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  while (read(file, bytes.data(), bytes.size()) > 0) continue;
  close(file);
  return true;
}

bool writeWhole(const std::string& path, const std::string& text) {
  const std::string draft = path + ".least";
  const int file = open(draft.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file < 0) return false;
  const bool isWritten = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  return close(file) == 0 && isWritten && std::rename(draft.c_str(), path.c_str()) == 0;
}

// The session's first player of MPRIS.
class Listener {
 public:
  Listener() {
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) return;
    bus_.reset(opened);
    char** names = nullptr;
    if (sd_bus_list_names(opened, &names, nullptr) < 0) return;
    for (char** name = names; *name != nullptr; ++name) {
      if (name_.empty() && std::strncmp(*name, prefix, std::strlen(prefix)) == 0) name_ = *name;
      std::free(*name);
    }
    std::free(names);
  }

  bool hasPlayer() const { return !name_.empty(); }
  bool listen(const std::string& path) {
    sd_bus_message* reply = nullptr;
    if (sd_bus_call_method(bus_.get(), name_.c_str(), "/org/mpris/MediaPlayer2",
                           "org.freedesktop.DBus.Properties", "GetAll", nullptr, &reply, "s",
                           "org.mpris.MediaPlayer2.Player") < 0) {
      return false;
    }
    const bool isThere = sd_bus_message_is_empty(reply) == 0;
    sd_bus_message_unref(reply);
    return isThere && writeWhole(path, "{\"version\":1}\n");
  }

 private:
  static constexpr const char* prefix = "org.mpris.MediaPlayer2.";
  wire::BusPtr bus_;
  std::string name_;
};

// The player's window, reading by reading.
class Reader {
 public:
  explicit Reader(pid_t player) : program_(wire::connect(player)) {
    if (program_.direct) objects_ = wire::objectsOf(program_.direct.get());
    isReady_ = objects_.placed.size() >= rowsInView && panel_.isOpen();
    if (isReady_) objects_.placed.resize(rowsInView);
  }

  bool isReady() const { return isReady_; }
  bool read() {
    std::vector<std::string> again;
    const std::size_t share = (objects_.all.size() + ticksToRenew - 1) / ticksToRenew;
    for (std::size_t i = 0; i < share; ++i) {
      again.push_back(objects_.all[next_]);
      next_ = (next_ + 1) % objects_.all.size();
    }
    if (!wire::askReading(program_, objects_, again, tops_)) return false;
    panel_.show(tops_);
    return true;
  }

 private:
  wire::Program program_;
  wire::Objects objects_;
  LeastPanel panel_;
  bool isReady_ = false;
  std::size_t next_ = 0;
  std::vector<std::int32_t> tops_;
};

int complain(const char* what) {
  std::fprintf(stderr, "least_follower: %s\n", what);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 4 || (argc > 2 && std::strcmp(argv[2], "--listen") != 0)) {
    std::fputs("usage: least_follower FOLDER [--listen [PLAYER]]\n", stderr);
    return 2;
  }
  const std::string folder = argv[1];
  std::optional<Listener> listener;
  std::optional<Reader> reader;
  if (argc > 2 && !listener.emplace().hasPlayer()) return complain("no player is there");
  if (argc > 3 && !reader.emplace(std::atoi(argv[3])).isReady()) {
    return complain("the player shows too little, or there is no display");
  }
  const int timer = startTicking();
  if (timer < 0) return complain("no timer");
  std::uint64_t expired = 0;
  for (std::uint64_t ticks = 0; read(timer, &expired, sizeof expired) == sizeof expired; ++ticks) {
    if (!readFile(folder + "/snapshot.json")) return complain("the snapshot cannot be read");
    const bool isToListen = listener && ticks % ticksToListen == 0;
    if (isToListen && !listener->listen(folder + "/nowplaying.json")) {
      return complain("the player does not say what it plays");
    }
    if (reader && !reader->read()) return complain("the player does not answer");
  }
  return complain("the timer stopped");
}
