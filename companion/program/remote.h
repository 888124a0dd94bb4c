#pragma once

#include <deque>
#include <optional>
#include <string>

#include "companion/exchange/command_watch.h"
#include "companion/exchange/folder.h"

namespace vellora::companion {

// The player's remote control while the companion keeps the exchange folder: sends one command
// after the other, each once the one before has had its effect. Main thread.
class Remote {
 public:
  // More are not kept: a held key shall not go on for minutes.
  static constexpr std::size_t mostWaiting = 8;
  static constexpr double patience = 4;  // seconds for an effect

  void send(MusicCommand::Action action, SeekTarget target = {});

  // Whether a command waits for its effect, so that `step` is to be called several times a second.
  bool underWay() const { return current_ || !waiting_.empty(); }

  void step(double now, const std::optional<NowPlayingTrack>& published,
            const ExchangeFolder& folder);

  // What became of the last one; empty until there was one.
  const std::string& report() const { return report_; }

 private:
  struct Waiting {
    MusicCommand::Action action;
    SeekTarget target;
  };
  std::deque<Waiting> waiting_;
  std::optional<CommandWatch> current_;
  std::string report_;
};

}  // namespace vellora::companion
