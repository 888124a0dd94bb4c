#pragma once

#include <string>

#include "contracts/contract.h"
#include "platform/music_scripting.h"

namespace vellora {

// A player that has an answer to one request and refuses another.
class MusicScriptingSubject {
 public:
  virtual ~MusicScriptingSubject() = default;

  virtual MusicScripting& scripting() = 0;
  virtual ScriptRequest answeredRequest() = 0;
  virtual std::string answer() = 0;
  virtual ScriptRequest refusedRequest() = 0;
  // What the player says to it, in its own words.
  virtual std::string refusal() = 0;
};

using MusicScriptingContract = ContractTest<MusicScriptingSubject>;

}  // namespace vellora
