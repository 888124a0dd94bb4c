#pragma once

#include <memory>
#include <string_view>

#include "platform/linux/player/player_directory.h"
#include "platform/linux/player/silent_player.h"
#include "platform/music_scripting.h"

namespace vellora {

// Carries out the requests over MPRIS (MPRIS D-Bus Interface Specification 2.2) with the meaning
// and the replies of the scripts, giving up on a player 250 ms after a request began: then there is
// an error's description and no reply, and so there is at once for further requests until that
// player answers again. The player is the one whose DesktopEntry is "com.apple.Music". Where it
// does not run, nothing plays, and a command fails: a player is never started for one. Main thread.
class MprisScripting : public MusicScripting {
 public:
  ScriptOutcome run(const ScriptRequest& request) override;

 private:
  SessionBus bus_;
  std::unique_ptr<PlayerDirectory> directory_;
  std::unique_ptr<SilentPlayer> silent_;
};

}  // namespace vellora
