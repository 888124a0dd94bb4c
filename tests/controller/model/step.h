#pragma once

#include <cstddef>
#include <iosfwd>

#include "controller/model/world.h"

namespace vellora::model {

// One thing that happens. The first of them change the world; the others happen to the controller.
enum class Event {
  wait,
  allIsWell,  // a fresh snapshot, and the player in front with its lyrics
  writeSnapshot,
  breakSnapshot,
  removeSnapshot,
  writeSync,
  breakSync,
  removeSync,
  writeCommand,
  breakCommand,
  removeCommand,
  removeStatus,
  blockStatus,
  takeFolderAway,
  bringFolderBack,
  changeFront,
  changeTrust,
  changeWindow,
  changeRows,
  scroll,
  changeTitle,
  changeReply,
  changeScriptTime,
  changeScreen,
  tick,
  read,
  finishReading,
  openUrl,
  chooseAllow,
  chooseStop,
  launch,
  startAgain,
};
inline constexpr int eventCount = static_cast<int>(Event::startAgain) + 1;
inline constexpr int mostOfStep = 16;  // the numbers of a step are below

struct Step {
  Event event = Event::wait;
  int a = 0;  // which of the event's variants
  int b = 0;
};
std::ostream& operator<<(std::ostream& out, const Step& step);

// Changes the world as the step says; `at` is the folder whose files it concerns. False for what
// happens to the controller.
bool change(World& world, const Step& step, std::size_t at);

// What the step's URL is, and the folder that it names; nothing for one that is not accepted.
struct OpenedUrl {
  std::string form;  // with FOLDER in the place of the folder's path
  std::optional<std::size_t> folder;
};
OpenedUrl openedUrl(const Step& step);

}  // namespace vellora::model
