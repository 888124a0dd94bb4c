#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "platform/linux/glib/bus_watch.h"
#include "platform/linux/player/player_directory.h"
#include "platform/linux/player/silent_player.h"
#include "platform/music_scripting.h"

namespace vellora {

// Carries out the requests over MPRIS (MPRIS D-Bus Interface Specification 2.2) with the meaning
// and the replies of the scripts, giving up on a player when its patience is over, from a request's
// beginning: then there is an error's description and no reply, and so there is at once for further
// requests until that player answers again. The player is the one whose DesktopEntry is
// "com.apple.Music"; else one of the process that a player's window is of. Where there is none,
// or no session bus, nothing plays, and a command fails: a player is never started for one. A bus
// that does not answer is told of once. Main thread.
class MprisScripting : public MusicScripting {
 public:
  static constexpr std::chrono::milliseconds defaultPatience{250};
  // The seconds that VELLORA_PLAYER_PATIENCE asks for, a minute at most; the default where it is
  // not set or says nothing of use.
  static std::chrono::milliseconds chosenPatience();

  // `windows` are those of players; null: none.
  explicit MprisScripting(std::shared_ptr<const PlayerWindows> windows = nullptr,
                          std::chrono::milliseconds patience = defaultPatience)
      : windows_(std::move(windows)), patience_(patience) {}

  ScriptOutcome run(const ScriptRequest& request) override;

 private:
  void useBus(const SessionBus& present);
  void leaveBus();
  ScriptOutcome askPlayer(const ScriptRequest& request);

  const std::shared_ptr<const PlayerWindows> windows_;
  const std::chrono::milliseconds patience_;
  SessionBus bus_;  // null while there is none
  std::unique_ptr<PlayerDirectory> directory_;
  std::unique_ptr<SilentPlayer> silent_;
  std::optional<BusWatch> watch_;  // from the first request on
};

}  // namespace vellora
