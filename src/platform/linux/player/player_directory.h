#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/glib/deadline.h"
#include "platform/linux/glib/session_bus.h"
#include "platform/linux/glib/waiting_room.h"

namespace vellora {

// Finds a player among those of the session: the bus names that begin with
// "org.mpris.MediaPlayer2.", each of which is asked once for its property DesktopEntry (MPRIS D-Bus
// Interface Specification 2.2, org.mpris.MediaPlayer2). One that does not answer holds up the
// request that asked it, no later one; its answer counts when it comes. Main thread.
class PlayerDirectory {
 public:
  // `desktopEntry` is the application id, the base name of a desktop file without its suffix.
  PlayerDirectory(SessionBus bus, std::string desktopEntry);
  ~PlayerDirectory();
  PlayerDirectory(const PlayerDirectory&) = delete;
  PlayerDirectory& operator=(const PlayerDirectory&) = delete;

  struct Found {
    std::optional<std::string> busName;  // the first in the alphabet where several answer to it
    bool complete = true;                // false: a player was asked now and did not answer in time
  };
  Found find(const Deadline& deadline);

 private:
  struct Player {
    bool answered = false;
    std::optional<std::string> desktopEntry;
  };

  std::optional<std::map<std::string, std::shared_ptr<Player>>> list(
      const Deadline& deadline) const;
  std::shared_ptr<Player> ask(const std::string& busName) const;
  std::optional<std::string> match() const;
  static void answered(GObject* bus, GAsyncResult* result, gpointer player) noexcept;

  SessionBus bus_;
  std::string desktopEntry_;
  WaitingRoom room_;
  GObjectPtr<GCancellable> end_;
  std::map<std::string, std::shared_ptr<Player>> players_;
};

}  // namespace vellora
