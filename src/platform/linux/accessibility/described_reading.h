#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/described_memory.h"
#include "platform/linux/accessibility/media_players.h"
#include "platform/linux/players/player_windows.h"
#include "platform/reading_limits.h"

namespace vellora {

struct DescribedRow {
  std::string text;
  Rect frame;
};

// What a described player shows, in points from the top left of the screen.
struct DescribedLayout {
  bool isIconified = false;
  std::optional<Rect> window;
  std::string title;             // "TITLE — ARTIST"; empty when it is not known
  bool hasView = false;          // the lyrics are there
  std::optional<Rect> viewport;  // the part of them that the page shows
  std::vector<DescribedRow> rows;
};

// One reading of a described player's window: finds its program, its window in front and in that
// the view of the first description that has one. What was found stays in the memory; in the next
// readings only what moves is asked: the states of window and page, the frames of both, of the
// view, and of the rows that can be seen. What an answer contradicts is looked for again, and so is
// after `longestMemory` the list of rows and the texts of those in sight, after five times as long
// the view among the elements that are there then, everything where there is no view, and after
// sixty times everything in any case. A search that a reading has no time for goes on in the next.
//
// Finding the program takes one messaging timeout at most, all else the walk's time. Nothing when
// the program is not there or does not answer. One thread at a time.
std::optional<DescribedLayout> readDescribed(BusConnection& bus, MediaPlayers& players,
                                             DescribedMemory& memory, const PlayerWindow& window,
                                             Steady::duration longestMemory,
                                             const ReadingLimits& limits);

}  // namespace vellora
