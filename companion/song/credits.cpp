#include "companion/song/credits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "companion/song/text.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

using OverlayMatching::trimmed;

enum class Kind { none, certain, maybeSung };

constexpr std::size_t longestKey = 60;  // bytes

constexpr std::array<std::string_view, 51> certain{
    "作词", "作詞",   "作曲",   "编曲", "編曲", "填词", "填詞", "词",   "詞",     "曲",     "词曲",
    "詞曲", "制作人", "製作人", "监制", "監製", "混音", "录音", "錄音", "母带",   "母帶",   "和声",
    "和聲", "吉他",   "贝斯",   "貝斯", "鼓",   "键盘", "鍵盤", "弦乐", "弦樂",   "出品",   "发行",
    "發行", "制作",   "製作",   "统筹", "企划", "演唱", "原唱", "歌手", "混音师", "录音师", "编写",
    "原曲", "作詞者", "作曲者", "작사", "작곡", "편곡", "노래"};

constexpr std::array<std::string_view, 22> english{"lyrics",
                                                   "lyrics by",
                                                   "lyricist",
                                                   "words by",
                                                   "written by",
                                                   "music by",
                                                   "composed by",
                                                   "composer",
                                                   "arranged by",
                                                   "arranger",
                                                   "arrangement",
                                                   "produced by",
                                                   "producer",
                                                   "mixed by",
                                                   "mastered by",
                                                   "vocals by",
                                                   "lyrics and music by",
                                                   "words and music by",
                                                   "lyrics & music by",
                                                   "music and lyrics by",
                                                   "songwriter",
                                                   "translated by"};

template <typename List>
bool holds(const List& list, std::string_view word) {
  return std::ranges::find(list, word) != list.end();
}

// "作词/作曲" as well.
bool allCertain(std::string_view key) {
  constexpr std::array<std::string_view, 4> between{"/", "&", "、", "／"};
  std::size_t at = std::string_view::npos;
  std::size_t length = 0;
  for (const std::string_view sign : between) {
    const std::size_t found = key.find(sign);
    if (found >= at) continue;
    at = found;
    length = sign.size();
  }
  const std::string_view first = trimmed(key.substr(0, at));
  if (!holds(certain, first)) return false;
  return at == std::string_view::npos || allCertain(key.substr(at + length));
}

Kind kindOf(std::string_view text) {
  constexpr std::string_view wide = "：";
  const std::size_t end = std::min(text.find(':'), text.find(wide));
  if (end == std::string_view::npos || end > longestKey) return Kind::none;
  const std::string_view key = trimmed(text.substr(0, end));
  if (allCertain(key)) return Kind::certain;
  return holds(english, lowerCase(key)) ? Kind::maybeSung : Kind::none;
}

// Lines before the first that names somebody.
std::size_t mostHeadings(Kind kind) { return kind == Kind::certain ? 2 : 1; }

}  // namespace

void leaveOutCredits(LyricFile& file, Problems& problems) {
  std::vector<Kind> kinds;
  for (const FileLine& line : file.lines) kinds.push_back(kindOf(line.text));
  std::vector<bool> out(kinds.size());
  // Lines without text stand between them, too.
  const auto blank = [&](std::size_t i) { return file.lines[i].text.empty(); };
  const auto credit = [&](std::size_t i) { return kinds[i] != Kind::none; };
  std::size_t begin = 0;
  std::size_t headings = 0;
  for (; begin < kinds.size() && !credit(begin); ++begin) headings += blank(begin) ? 0 : 1;
  const bool heads = begin < kinds.size() && headings <= mostHeadings(kinds[begin]);
  for (std::size_t i = begin; heads && i < kinds.size() && (credit(i) || blank(i)); ++i) {
    out[i] = credit(i);
  }
  for (std::size_t i = kinds.size(); i-- > 0 && (credit(i) || blank(i));) out[i] = credit(i);
  const auto count = static_cast<std::size_t>(std::ranges::count(out, true));
  // A file of nothing else says something by them.
  const bool any = std::ranges::any_of(file.lines, [&](const FileLine& line) {
    return !line.text.empty() && !out[static_cast<std::size_t>(&line - file.lines.data())];
  });
  if (count == 0 || !any) return;
  const auto first = static_cast<std::size_t>(std::ranges::find(out, true) - out.begin());
  problems.note(file.lines[first].number, counted(count, "line") +
                                              " from here on named who made the song, and " +
                                              (count == 1 ? "is" : "are") + " left out");
  std::vector<FileLine> left;
  for (std::size_t i = 0; i < out.size(); ++i) {
    if (!out[i]) left.push_back(std::move(file.lines[i]));
  }
  file.lines = std::move(left);
}

}  // namespace vellora::companion
