#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

struct sd_bus;

namespace vellora {

// Watches, from outside, an overlay that reads a player: when it ticks (it opens its snapshot), and
// what it asks of the player and is answered (as a monitor of the accessibility bus). What is noted
// late, because this process was not woken, never stands before a tick that came before it. One
// thread.
class ReadingOnlooker {
 public:
  enum class What {
    tick,
    asked,  // a reading's first question
    place,  // an answer to where an element is
    moved,  // the same, and not the place that the element had
  };
  struct Event {
    std::int64_t microseconds;  // since 1970
    What what;
  };

  // Of the overlay of that process, which reads this snapshot. Null where it cannot be watched;
  // `problem` then says why. Whoever opens the snapshot from now on is taken for the overlay.
  static std::unique_ptr<ReadingOnlooker> watch(pid_t overlay, const std::string& snapshot,
                                                std::string& problem);
  ~ReadingOnlooker();
  ReadingOnlooker(const ReadingOnlooker&) = delete;
  ReadingOnlooker& operator=(const ReadingOnlooker&) = delete;

  // Notes what comes within so many milliseconds, and what comes on `other`, where that is a
  // descriptor, by `function`.
  void look(int milliseconds, int other = -1, const std::function<void()>& function = nullptr);

  const std::vector<Event>& seen() const { return seen_; }
  static std::int64_t now();

 private:
  struct CloseBus {
    void operator()(sd_bus* bus) const;
  };
  using Bus = std::unique_ptr<sd_bus, CloseBus>;

  ReadingOnlooker(Bus bus, int files);
  void note(What what);
  void noteTicks();
  void noteMessages();

  Bus bus_;
  int files_;  // inotify's descriptor
  std::vector<Event> seen_;
  std::map<std::uint64_t, std::string> questions_;  // by their number, whose place is asked
  std::map<std::string, std::array<std::int32_t, 4>> places_;
};

// When the program whose standard error, with WAYLAND_DEBUG=client, is in that file has committed a
// surface, in microseconds since 1970: the log has their lowest 32 bits, and nothing in it is older
// than an hour.
std::vector<std::int64_t> commitsIn(const std::string& log);
// How many requests it has sent.
std::size_t requestsIn(const std::string& log);

}  // namespace vellora
