#include "companion/library/lyric_shift.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/files.h"
#include "companion/library/song_names.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

constexpr std::string_view firstLine = "vellora lyric shifts 1\n";
constexpr std::string_view lastLine = "end\n";

std::string onOneLine(const std::string& text) { return cleaned(cut(text, longestText)); }

// Songs by their names, compared as the library does.
class Names {
 public:
  Names(const std::string& title, const std::string& artist)
      : title_(title), keys_(keysOf(title, artist)) {}
  bool operator==(const Names& other) const {
    // A title without letters has no key.
    const bool sameTitle =
        keys_.title.empty() ? title_ == other.title_ : keys_.title == other.keys_.title;
    return sameTitle && keys_.artist == other.keys_.artist;
  }

 private:
  const std::string& title_;
  SongKeys keys_;
};

// What stands before `end`, which is taken off with it; everything where it does not occur.
std::string_view takeUntil(std::string_view& text, char end) {
  const std::string_view part = text.substr(0, text.find(end));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

}  // namespace

LyricShift::LyricShift(std::filesystem::path file, std::size_t most)
    : file_(std::move(file)), most_(most) {
  if (!file_.empty()) removeAbandonedFiles(file_.parent_path());
}

void LyricShift::play(const std::string& title, const std::string& artist) {
  Kept next{onOneLine(title), onOneLine(artist)};
  if (next.title == now_.title && next.artist == now_.artist) return;
  keep();
  changed_ = false;
  now_ = std::move(next);
  if (now_.title.empty()) return;
  const Names wanted(now_.title, now_.artist);
  for (const Kept& kept : read()) {
    if (Names(kept.title, kept.artist) == wanted) now_.milliseconds = kept.milliseconds;
  }
}

void LyricShift::change(int milliseconds) {
  if (now_.title.empty()) return;
  now_.milliseconds = std::clamp(now_.milliseconds + milliseconds, -farthest, farthest);
  changed_ = true;
}

bool LyricShift::keep() {
  if (!changed_ || file_.empty()) return true;
  // Read again: another companion may have written meanwhile.
  std::vector<Kept> all = read();
  const Names own(now_.title, now_.artist);
  std::erase_if(all, [&](const Kept& kept) { return Names(kept.title, kept.artist) == own; });
  if (now_.milliseconds != 0) all.push_back(now_);
  if (all.size() > most_) all.erase(all.begin(), all.end() - static_cast<std::ptrdiff_t>(most_));
  std::string text(firstLine);
  for (const Kept& kept : all) {
    text.append(std::to_string(kept.milliseconds)).append("\t").append(kept.title);
    text.append("\t").append(kept.artist).append("\n");
  }
  if (makePrivateFolder(file_.parent_path())) return false;
  changed_ = !writeFileAtomically(file_, text.append(lastLine));
  return !changed_;
}

std::vector<LyricShift::Kept> LyricShift::read() const {
  const auto bytes = file_.empty() ? std::nullopt : readWholeFile(file_);
  if (!bytes || !bytes->starts_with(firstLine)) return {};
  std::string_view rest = std::string_view(*bytes).substr(firstLine.size());
  std::vector<Kept> all;
  while (rest != lastLine) {
    std::string_view line = takeUntil(rest, '\n');
    const std::string_view number = takeUntil(line, '\t');
    Kept kept;
    const auto end = number.data() + number.size();
    const auto result = std::from_chars(number.data(), end, kept.milliseconds);
    kept.title = takeUntil(line, '\t');
    kept.artist = line;
    const bool whole = result.ec == std::errc() && result.ptr == end && !kept.title.empty();
    if (!whole || std::abs(kept.milliseconds) > farthest || all.size() == mostSongs) return {};
    all.push_back(std::move(kept));
  }
  return all;
}

}  // namespace vellora::companion
