#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// Everything around the controller, as plain values: what the model reads, and what the test makes
// true on disk and in the fakes. Times are seconds since 1970 in eighths, so that each sum of them
// is exact and limits are met to the point.
namespace vellora::model {

struct Box {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  bool operator==(const Box&) const = default;
};

struct Line {
  std::string source;
  std::string translation;
  bool operator==(const Line&) const = default;
};

struct Snapshot {
  bool readable = true;  // false: the file is there, but no snapshot
  std::int64_t version = 1;
  double updatedAt = 0;
  bool enabled = true;
  std::string title;
  std::string artist;
  double fontSize = 32;
  double offset = 0;
  std::vector<Line> lines;
};

struct Sync {
  bool readable = true;
  double updatedAt = 0;
};

struct Command {
  bool readable = true;
  double requestedAt = 0;
  std::string action;
};

struct Status {
  std::string message;
  bool stopped = false;
  bool operator==(const Status&) const = default;
};

struct NowPlaying {
  double updatedAt = 0;
  std::string title;
  std::string artist;
  std::string album;
  double position = 0;
  bool playing = false;
};

// A folder of the exchange and the files in it.
struct Folder {
  bool there = true;
  std::optional<Snapshot> snapshot;
  std::optional<Sync> sync;
  std::optional<Command> command;
  std::optional<Status> status;
  bool statusIsFolder = false;  // something is there that no file can replace
  std::optional<NowPlaying> nowPlaying;
};

struct Row {
  std::string text;
  Box frame;  // without scrolling
};

// The player's window as it shows itself.
struct PlayerWindow {
  std::int32_t process = 4711;
  bool there = true;
  bool minimised = false;
  Box frame{0, 30, 1200, 800};  // of no width: it has none
  bool lyricsShown = true;
  Box scrollArea{600, 100, 580, 650};
  std::optional<std::string> title;  // nothing: no element tells it
  std::vector<Row> rows;
  double scrolled = 0;
};

// What the player answers to a script.
struct PlayerReply {
  bool made = true;  // false: the script could not even be made
  bool hasText = true;
  bool fails = false;  // an error's description comes with it
  // The fields of the reply to what is playing.
  std::vector<std::string> fields;
};

struct Program {
  std::optional<std::string> identifier;
  std::int32_t process = 0;
};

struct World {
  double now = 1'700'000'000;
  std::array<Folder, 3> folders;
  bool trusted = true;
  std::optional<Program> frontmost;
  PlayerWindow player;
  PlayerReply reply;
  double scriptSeconds = 0;
  std::optional<double> screenHeight = 1000;
};

}  // namespace vellora::model
