#include "companion/library/song_names.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "companion/song/text.h"
#include "matching/normalization.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

using OverlayMatching::normalized;
using OverlayMatching::trimmed;

constexpr std::string_view dash = " - ";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The end of the number of up to three digits at `begin`, which is `begin` where there is none.
std::size_t endOfNumber(std::string_view text, std::size_t begin) {
  std::size_t end = begin;
  while (end < text.size() && end < begin + 3 && isDigit(text[end])) ++end;
  return end;
}

// "03 Title", "03. Title", "03 - Title", "03-title", "1-02 Title" without the track's number.
std::string_view withoutNumber(std::string_view stem) {
  constexpr std::string_view between = " .-_";
  std::size_t end = endOfNumber(stem, 0);
  if (end == 0 || end == stem.size()) return stem;
  if (stem[end] == '-' || stem[end] == '.') {  // the disc's number was the first
    const std::size_t second = endOfNumber(stem, end + 1);
    const bool parted = second < stem.size() && between.find(stem[second]) != between.npos;
    if (second > end + 1 && parted) end = second;
  }
  const std::size_t next = stem.find_first_not_of(between, end);
  return next == end || next == std::string_view::npos ? stem : stem.substr(next);
}

// "7 Years": a number that may well be a part of the title, and not the track's.
bool mayBeginTitle(std::string_view stem) {
  const std::size_t end = endOfNumber(stem, 0);
  return stem.front() != '0' && stem.substr(end, 1) == " " && stem.substr(end, dash.size()) != dash;
}

// With " - " for an en dash or an em dash between two blanks.
std::string withPlainDashes(std::string_view text) {
  std::string result(text);
  for (const std::string_view other : {" – ", " — "}) {
    for (std::size_t at = 0; (at = result.find(other, at)) != std::string::npos;) {
      result.replace(at, other.size(), dash);
    }
  }
  return result;
}

// The part before an opening bracket whose closing one ends the title.
std::string_view withoutBrackets(std::string_view title) {
  constexpr std::array<std::string_view, 4> closing{")", "]", "）", "】"};
  constexpr std::array<std::string_view, 4> opening{"(", "[", "（", "【"};
  for (std::size_t i = 0; i < closing.size(); ++i) {
    if (!title.ends_with(closing[i])) continue;
    const std::size_t begin = title.rfind(opening[i]);
    if (begin != std::string_view::npos) return trimmed(title.substr(0, begin));
  }
  return title;
}

bool namesVersion(std::string_view text) {
  const std::string lower = lowerCase(text);
  constexpr std::array<std::string_view, 10> words{
      "remaster", "live", "version", "edit", "mix", "mono", "stereo", "acoustic", "demo", "feat"};
  return std::ranges::any_of(
      words, [&](std::string_view word) { return lower.find(word) != std::string::npos; });
}

// "A feat. B" and "A" are taken for one artist.
bool artistsMeet(const std::string& a, const std::string& b) {
  return a.find(b) != std::string::npos || b.find(a) != std::string::npos;
}

int likenessOfTags(const SongKeys& tags, const SongKeys& wanted) {
  if (tags.title.empty() || tags.title != wanted.title) return 0;
  if (tags.artist.empty() || wanted.artist.empty()) return 3;
  if (tags.artist == wanted.artist) return 6;
  return artistsMeet(tags.artist, wanted.artist) ? 5 : 0;
}

int likenessOfName(const SongKeys& name, const SongKeys& wanted) {
  if (name.title.empty() || name.title != wanted.title) return 0;
  if (name.artist.empty() || wanted.artist.empty()) return 1;
  if (name.artist == wanted.artist) return 4;
  return artistsMeet(name.artist, wanted.artist) ? 2 : 0;
}

// Adds what a file of that name may be.
void addNames(std::vector<SongKeys>& to, std::string_view stem,
              const std::vector<std::string>& folders) {
  constexpr int mostParts = 4;
  std::size_t at = stem.find(dash);
  const bool whole = at == std::string_view::npos;
  for (int i = 0; i < mostParts && at != std::string_view::npos; ++i) {
    const std::string_view before = stem.substr(0, at);
    const std::string_view after = stem.substr(at + dash.size());
    to.push_back(keysOf(after, before));
    to.push_back(keysOf(before, after));
    at = stem.find(dash, at + 1);
  }
  // "Artist/Album/Artist - Title" is known already; here the folder says who plays "01 - Title".
  for (std::size_t i = 0; i < std::min<std::size_t>(folders.size(), 2); ++i) {
    to.push_back(keysOf(stem, folders[i]));
  }
  if (whole && folders.empty()) to.push_back(keysOf(stem, {}));
}

}  // namespace

SongKeys keysOf(std::string_view title, std::string_view artist) {
  return {normalized(title), normalized(artist)};
}

std::string plainTitle(std::string_view title) {
  const std::string spelled = withPlainDashes(title);
  std::string_view plain = trimmed(spelled);
  const std::size_t at = plain.rfind(dash);
  if (at != std::string_view::npos && namesVersion(plain.substr(at))) plain = plain.substr(0, at);
  for (std::string_view shorter = withoutBrackets(plain); shorter != plain;
       shorter = withoutBrackets(plain)) {
    if (shorter.empty()) break;
    plain = shorter;
  }
  plain = trimmed(plain);
  return std::string(plain.empty() ? title : plain);
}

SongNames namesOf(const SongFiles& files, const LyricFile& lyrics) {
  const auto tag = [&](const char* key) {
    const auto found = lyrics.tags.find(key);
    return found == lyrics.tags.end() ? std::string() : found->second;
  };
  SongNames names;
  names.title = tag("ti");
  names.artist = tag("ar");
  names.tags = keysOf(names.title, names.artist);

  const std::string whole = withPlainDashes(files.stem);
  const std::string_view cut = withoutNumber(whole);
  addNames(names.fileName, whole, files.folders);
  if (cut != whole) addNames(names.fileName, cut, files.folders);
  const std::string_view stem = cut == whole || mayBeginTitle(whole) ? whole : cut;
  const std::size_t first = stem.find(dash);
  if (names.title.empty()) {
    names.title =
        cleaned(first == std::string_view::npos ? stem : stem.substr(first + dash.size()));
    if (names.artist.empty() && first != std::string_view::npos) {
      names.artist = cleaned(stem.substr(0, first));
    }
  }
  return names;
}

int likeness(const SongNames& song, const SongKeys& wanted) {
  if (wanted.title.empty()) return 0;
  if (const int tags = likenessOfTags(song.tags, wanted); tags > 0) return tags;
  // A file whose tags name another song is not brought back by its name.
  if (!song.tags.title.empty() && !song.tags.artist.empty()) return 0;
  int best = 0;
  for (const SongKeys& name : song.fileName) best = std::max(best, likenessOfName(name, wanted));
  return best;
}

}  // namespace vellora::companion
