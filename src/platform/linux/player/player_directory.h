#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/player/bus_questions.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// Finds a player among those of the session: the bus names that begin with
// "org.mpris.MediaPlayer2.", each of which is asked once for its property DesktopEntry (MPRIS D-Bus
// Interface Specification 2.2, org.mpris.MediaPlayer2). One that does not answer holds up the
// request that asked it, no later one; its answer counts when it comes. While there is none, the
// bus itself tells when one comes. Main thread.
class PlayerDirectory {
 public:
  // `desktopEntry` is the application id, the base name of a desktop file without its suffix;
  // `windows` are those of players; null: none.
  PlayerDirectory(SessionBus bus, std::string desktopEntry,
                  std::shared_ptr<const PlayerWindows> windows);
  ~PlayerDirectory();
  PlayerDirectory(const PlayerDirectory&) = delete;
  PlayerDirectory& operator=(const PlayerDirectory&) = delete;

  struct Found {
    // The first in the alphabet with that desktop entry. Else one whose process belongs together
    // with a window's, the window last in front first: of several the first that is playing, else
    // the first.
    std::optional<std::string> busName;
    bool complete = true;  // false: a player was asked now and did not answer in time
    bool listed = true;    // false: the bus did not say in time who is there
  };
  // `asksBus` has the bus asked who is there in any case; else, where there was no player, only
  // when one has come, and every few seconds: a bus that hangs would not tell.
  Found find(const Deadline& deadline, bool asksBus);

 private:
  struct Player {
    BusAnswerPtr desktopEntry;
    BusAnswerPtr process;  // null: not asked yet
    BusAnswerPtr status;   // the last; null: never asked
  };

  bool knowsOfNone() const;
  bool list(const Deadline& deadline);
  std::optional<std::string> matchByEntry() const;
  Found matchByProcess(const Deadline& deadline);
  std::vector<std::string> playersOf(std::int32_t process) const;
  Found choose(const std::vector<std::string>& busNames, const Deadline& deadline);

  BusQuestions questions_;
  std::string desktopEntry_;
  std::shared_ptr<const PlayerWindows> windows_;
  guint ownersHeard_ = 0;
  std::map<std::string, Player> players_;
  std::optional<std::chrono::steady_clock::time_point> noneSince_;  // nothing: there was one
  bool hasNews_ = false;  // of names, since the bus was asked for them
};

}  // namespace vellora
