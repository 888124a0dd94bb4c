#include "companion/song/song.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "companion/song/bilingual.h"
#include "companion/song/pairing.h"
#include "companion/song/time_stamp.h"
#include "matching/normalization.h"

namespace vellora::companion {
namespace {

void takeOwn(Song& song, LyricFile& lyrics) {
  for (FileLine& line : lyrics.lines) {
    if (line.text.empty()) continue;
    song.lines.push_back(
        {line.time, std::move(line.text), std::move(line.translation), line.number, {}});
  }
}

void append(std::vector<Problem>& to, std::vector<Problem>&& from) {
  to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
}

}  // namespace

std::string captionText(const SongLine& line, ReadingPlace place) {
  if (line.reading.empty()) return line.translation;
  if (line.translation.empty() || place == ReadingPlace::alone) return line.reading;
  return line.reading + "\n" + line.translation;
}

bool SongLine::hasLetters() const { return !OverlayMatching::normalized(source).empty(); }

void Song::leaveOriginal() {
  open = false;
  for (SongLine& line : lines) line.translation.clear();
}

std::size_t Song::translated() const {
  return static_cast<std::size_t>(std::ranges::count_if(
      lines, [](const SongLine& line) { return !line.translation.empty() && !line.byProgram; }));
}

double Song::lastTime() const { return lines.empty() ? 0 : lines.back().time.value_or(0); }

bool Song::complete() const {
  if (lostLines > 0) return false;
  if (instrumental) return lines.empty();
  bool any = false;
  for (const SongLine& line : lines) {
    if (!line.hasLetters()) continue;
    if (line.translation.empty()) return false;
    any = true;
  }
  return any;
}

std::optional<std::size_t> Song::lineAt(double position) const {
  if (lines.empty() || !lines.front().time) return std::nullopt;
  const auto later = std::ranges::upper_bound(
      lines, position, {}, [](const SongLine& line) { return line.time.value_or(0); });
  if (later == lines.begin()) return std::nullopt;
  return static_cast<std::size_t>(later - lines.begin()) - 1;
}

std::vector<OverlayLine> Song::overlayLines(ReadingPlace place) const {
  std::vector<OverlayLine> result;
  std::size_t bytes = 0;
  for (const SongLine& line : lines) {
    if (!line.hasLetters()) continue;
    std::string caption = captionText(line, place);
    bytes += line.source.size() + caption.size();
    if (bytes > largestSnapshot) break;
    result.push_back({line.source, std::move(caption)});
  }
  return result;
}

Song assemble(LyricFile lyrics, std::optional<LyricFile> translation) {
  Song song;
  song.name = lyrics.name;
  song.problems = std::move(lyrics.problems);
  song.lostLines = lyrics.lost;
  song.instrumental = isInstrumental(lyrics);
  if (const auto tag = lyrics.tags.find("length"); tag != lyrics.tags.end()) {
    song.length = parseTime(tag->second);
  }
  Problems problems(lyrics.name);
  if (!translation && lyrics.mayBeBilingual && isBilingual(lyrics)) {
    song.lines = unfolded(lyrics, problems);
  } else {
    takeOwn(song, lyrics);
  }
  append(song.problems, std::move(problems).take());
  if (translation) {
    append(song.problems, std::move(translation->problems));
    song.lostTranslations = translation->lost;
    Problems pairing(translation->name);
    pair(song, *std::move(translation), lyrics.offset, pairing);
    append(song.problems, std::move(pairing).take());
  }
  return song;
}

}  // namespace vellora::companion
