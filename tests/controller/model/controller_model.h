#pragma once

#include <cstddef>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "controller/model/world.h"

namespace vellora::model {

struct ModelCaption {
  std::string text;
  Box rect;
  double font = 0;
  double softness = 0;
};

// What the player's window tells in one reading.
struct Reading {
  Box window;
  std::optional<Box> viewport;  // nothing: no lyrics in sight
  std::string title;
  std::vector<Row> rows;  // top first
};

// What the controller does, told once more and as plainly as possible: without files, platform,
// caches or speed, and with none of the controller's code. Reads the world, and writes the files in
// it that the controller writes.
class ControllerModel {
 public:
  // A program that starts, with the snapshot of a folder or without one; it is not launched.
  ControllerModel(World& world, std::optional<std::size_t> given)
      : folder(given), lastFresh(world.now), world_(world) {}

  void launch(bool statusItemIsShown);
  void openFolder(std::size_t opened);
  void tick();
  // The reading in flight is made, and its result comes back.
  void read();
  void finishReading();
  void allow() { askForTrust(); }
  void stop();

  // What can be seen of it.
  std::optional<std::size_t> folder;
  bool panelShown = false;
  Box panelFrame;
  Box canvasFrame;
  std::vector<ModelCaption> captions;
  std::string toolTip;
  std::string statusMessage;
  bool scanning = false;
  double lastFresh;
  double lastPublish = -std::numeric_limits<double>::infinity();
  std::map<std::string, std::string> translations;
  // Since somebody emptied them: the scripts that ran, "?" for what is playing; how often the
  // system was asked for trust, and the program to end.
  std::vector<std::string> scripts;
  std::size_t trustRequests = 0;
  std::size_t terminations = 0;

 private:
  struct Flight {
    std::int32_t process = 0;
    Snapshot snapshot;
    bool made = false;
    std::optional<Reading> reading;
  };

  Folder* exchange();
  bool syncing();
  void runCommand();
  void publish();
  void runScript(const std::string& name);
  bool isUsable(const Snapshot& snapshot) const;
  bool musicIsInFront() const;
  void askForTrust();
  void report(const std::string& message, bool stopped = false);
  void hide(const std::string& message);
  std::optional<Reading> readPlayer(std::int32_t process) const;
  void compose(const std::optional<Reading>& reading, const Snapshot& snapshot);
  std::string translationOf(const std::string& text, const std::vector<Line>& lines);

  World& world_;
  bool hasToolTip_ = false;
  bool askedForTrust_ = false;
  std::optional<Flight> flight_;
  std::vector<Line> lastLines_;
};

}  // namespace vellora::model
