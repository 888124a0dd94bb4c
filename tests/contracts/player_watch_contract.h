#pragma once

#include <memory>
#include <string>

#include "contracts/contract.h"
#include "platform/player_watch.h"

namespace vellora {

// A session whose players the test starts, lets hang and ends.
class PlayerWatchSubject {
 public:
  struct Playing {
    std::string title;
    std::string artist;
    std::string album;
    double position = 0;  // seconds
    bool plays = true;    // else it is paused
  };

  virtual ~PlayerWatchSubject() = default;

  virtual PlayerWatch& watch() = 0;
  // A player of that name, a short word.
  virtual void start(const std::string& name, const Playing& playing) = 0;
  virtual void pause(const std::string& name) = 0;
  virtual void hang(const std::string& name) = 0;
  virtual void wake(const std::string& name) = 0;
  virtual void end(const std::string& name) = 0;
  // Lets what the players say come in, for a moment.
  virtual void settle() = 0;
};

using PlayerWatchContract = ContractTest<PlayerWatchSubject>;

}  // namespace vellora
