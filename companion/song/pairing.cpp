#include "companion/song/pairing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

#include "companion/song/stanzas.h"
#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "matching/translation_index.h"

namespace vellora::companion {
namespace {

constexpr double sameTime = 0.05;         // seconds
constexpr double roundingError = 0.0005;  // seconds

// How many of the file's lines have the time of one of the song's.
std::size_t fitting(const Song& song, const LyricFile& file) {
  const auto fits = [&](const FileLine& line) {
    const auto at = std::ranges::lower_bound(song.lines, *line.time - sameTime, {},
                                             [](const SongLine& sung) { return *sung.time; });
    return at != song.lines.end() && *at->time <= *line.time + sameTime;
  };
  return static_cast<std::size_t>(std::ranges::count_if(file.lines, fits));
}

// A translation is often made of a copy of the lyrics, and the offset then set right in one alone.
void settleOffset(const Song& song, double offset, LyricFile& translation) {
  LyricFile stamped = translation;
  stamped.offset = offset;
  for (FileLine& line : stamped.lines) {
    line.time = std::max(*line.time + translation.offset - offset, 0.0);
  }
  if (fitting(song, stamped) > fitting(song, translation)) translation = std::move(stamped);
}

// As it is to be written in a file with that offset.
std::string nearestStamp(const Song& song, double time, double offset) {
  const auto nearest =
      std::ranges::min_element(song.lines, [&](const SongLine& a, const SongLine& b) {
        return std::abs(*a.time - time) < std::abs(*b.time - time);
      });
  return nearest == song.lines.end() ? std::string() : stampText(*nearest->time + offset);
}

void pairByTime(Song& song, const LyricFile& translation, Problems& problems) {
  std::vector<bool> taken(song.lines.size());
  std::vector<const FileLine*> alone;
  std::size_t from = 0;
  for (const FileLine& line : translation.lines) {
    if (line.text.empty()) continue;
    while (from < song.lines.size() && *song.lines[from].time < *line.time - sameTime) ++from;
    std::optional<std::size_t> best;
    for (std::size_t i = from;
         i < song.lines.size() && *song.lines[i].time <= *line.time + sameTime; ++i) {
      const auto distance = [&](std::size_t at) {
        return std::abs(*song.lines[at].time - *line.time);
      };
      if (!taken[i] && (!best || distance(i) < distance(*best) - roundingError)) best = i;
    }
    if (!best) {
      alone.push_back(&line);
      continue;
    }
    taken[*best] = true;
    song.lines[*best].translation = line.text;
  }
  // They may all belong to lines that were lost, which is told where these stand.
  if (alone.size() <= song.lostLines) return;
  for (const FileLine* line : alone) {
    problems.warn(line->number,
                  "no line of the lyrics has the time " +
                      stampText(*line->time + translation.offset) + " of " + inQuotes(line->text),
                  "give it the time of the line that it translates; the nearest is " +
                      nearestStamp(song, *line->time, translation.offset));
  }
}

void pairByTable(Song& song, const LyricFile& table) {
  std::vector<OverlayLine> lines;
  for (const FileLine& line : table.lines) lines.push_back({line.text, line.translation});
  const TranslationIndex index(lines);
  for (SongLine& line : song.lines) {
    if (const auto found = index.translation(line.source)) line.translation = cleaned(*found);
  }
}

}  // namespace

void pair(Song& song, LyricFile translation, double offset, Problems& problems) {
  const bool timed = !song.lines.empty() && song.lines.front().time.has_value();
  if (translation.isTable) {
    pairByTable(song, translation);
  } else if (timed && translation.timed()) {
    if (translation.offset != offset) settleOffset(song, offset, translation);
    pairByTime(song, translation, problems);
  } else {
    pairByPlace(song, translation, problems);
  }
}

}  // namespace vellora::companion
