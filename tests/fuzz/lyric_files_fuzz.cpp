#include <algorithm>
#include <string>

#include "base/utf8.h"
#include "companion/lyrics/encoding.h"
#include "companion/lyrics/reading.h"
#include "companion/song/song.h"
#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"

namespace vellora {

using namespace companion;

namespace {

// What may be shown on a terminal.
void requireShowable(const std::string& text, const char* what) {
  require(isWellFormed(text) && cleaned(text) == text, what);
}

void requireSound(const LyricFile& file) {
  require(file.lines.size() <= mostLines, "as many lines as are taken");
  require(file.problems.size() <= Problems::most + 2, "as many problems as are told");
  for (std::size_t i = 0; i < file.lines.size(); ++i) {
    const FileLine& line = file.lines[i];
    requireShowable(line.text, "a line's text");
    requireShowable(line.translation, "a line's translation");
    require(line.text.size() <= longestText, "a line's length");
    require(line.time.has_value() == file.timed(), "times for all lines or for none");
    require(i == 0 || !line.time || *file.lines[i - 1].time <= *line.time, "lines in order");
  }
  for (const Problem& problem : file.problems) {
    require(isWellFormed(problem.text()), "a problem's text");
    require(problem.text().find('\x1b') == std::string::npos, "a problem without control codes");
  }
}

void requireSong(const Song& song) {
  std::size_t bytes = 0;
  for (const OverlayLine& line : song.overlayLines()) {
    bytes += line.source.size() + line.translation.size();
  }
  require(bytes <= largestSnapshot, "a snapshot's size");
  for (const double position : {-1.0, 0.0, 3.5, 1e9}) {
    const auto at = song.lineAt(position);
    require(!at || *at < song.lines.size(), "the line that is sung");
  }
  require(song.translated() <= song.lines.size(), "as many translations as lines");
}

}  // namespace

// Two files of a song: after the first two bytes, which say of what kinds, the first one's text up
// to a byte 1, and the second one's.
void fuzzLyricFiles(std::string_view bytes) {
  FuzzInput input(bytes);
  const auto name = [&](const char* stem) {
    return stem + std::string(readableEndings[input.below(readableEndings.size())]);
  };
  const std::string first = name("song");
  const std::string second = name("song.de");
  const std::string_view text = input.takeUntil('\1');
  if (const auto decoded = decodeText(text)) {
    require(isWellFormed(decoded->text), "a decoded text");
    require(!decoded->encoding.empty() && decoded->confidence <= 100, "a text's encoding");
    if (const auto time = parseTime(text)) require(*time >= 0, "a time");
    parseStamp(text);
    if (isWellFormed(text)) parseStamp(std::string(clockText(parseTime(text).value_or(0))));
  }
  const LyricFile lyrics = readLyrics(first, text, "de");
  requireSound(lyrics);
  requireSong(assemble(lyrics, std::nullopt));
  const LyricFile translation = readLyrics(second, input.rest(), "");
  requireSound(translation);
  requireSong(assemble(lyrics, translation));
}

}  // namespace vellora
