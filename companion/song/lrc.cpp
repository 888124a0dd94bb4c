#include "companion/song/lrc.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "base/number_text.h"
#include "companion/song/credits.h"
#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

using OverlayMatching::trimmed;

constexpr double roundingError = 0.0005;   // seconds
constexpr double largestOffset = 600'000;  // milliseconds
constexpr std::size_t mostStamps = 200;    // of one line
constexpr std::size_t longestStamp = 16;
constexpr std::size_t longestLine = mostStamps * longestStamp + 20 * longestText;

bool isTagKey(std::string_view key) {
  return !key.empty() && key.size() <= 12 && std::ranges::all_of(key, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '#';
  });
}

// The stamp that begins at `text`'s first character, its opening bracket, and how long it is.
struct Stamp {
  double time;
  std::size_t length;
};

std::optional<Stamp> stampAt(std::string_view text) {
  const char closing = text.front() == '<' ? '>' : ']';
  const std::size_t end = text.substr(0, longestStamp + 2).find(closing);
  if (end == std::string_view::npos) return std::nullopt;
  const auto time = parseStamp(text.substr(1, end - 1));
  if (!time) return std::nullopt;
  return Stamp{*time, end + 1};
}

// The text without the stamps of its words, cleaned and cut.
std::string sungText(std::string_view text) {
  const auto lengthOf = [](std::string_view rest) {
    const auto stamp = stampAt(rest);
    return stamp ? stamp->length : 0;
  };
  return cleaned(cut(withoutMarks(text, "<[", lengthOf), longestText));
}

// "[tr]", "[tr:LANGUAGE]" or "[tt]" with a text after it.
struct Mark {
  bool isTranslation;
  std::size_t length;
};

std::optional<Mark> markAt(std::string_view line) {
  const bool translation = line.starts_with("[tr]") || line.starts_with("[tr:");
  if (!translation && !line.starts_with("[tt]")) return std::nullopt;
  const std::size_t end = line.find(']') + 1;
  if (end == 0 || end == line.size()) return std::nullopt;
  return Mark{translation, end};
}

// {"t":0,"c":[{"tx":"…"}]}
bool isJson(std::string_view line) {
  return line.starts_with("{\"t\":") && line.ends_with('}') &&
         line.find("\"c\":[") != std::string_view::npos;
}

class Reader {
 public:
  explicit Reader(std::string_view name) : problems_(name) {
    file_.name = name;
    file_.mayBeBilingual = true;
  }

  bool take(int number, std::string_view raw) {
    // What comes after is no more than cut text; looking at it would take time that grows with it.
    std::string_view line = trimmed(cut(raw, longestLine));
    if (line.empty()) return true;
    std::vector<double> times;
    while (!line.empty() && line.front() == '[' && times.size() < mostStamps) {
      const auto stamp = stampAt(line);
      if (!stamp) break;
      times.push_back(stamp->time);
      line = trimmed(line.substr(stamp->length));
    }
    const std::optional<Mark> mark = markAt(line);
    if (mark && mark->isTranslation) {
      addMarked(number, times, line.substr(mark->length));
      return true;
    }
    if (mark || isJson(line)) return true;
    if (!times.empty()) return addTimed(number, times, line);
    if (line.front() == '[') {
      const std::size_t end = line.find(']');
      const std::string_view inside = line.substr(1, end == std::string_view::npos ? end : end - 1);
      if (looksLikeStamp(inside)) {
        ++file_.lost;
        problems_.warn(number,
                       "the time stamp " + inQuotes(line.substr(0, end)) + " cannot be read",
                       "write it as [mm:ss.xx] with seconds below 60");
        return true;
      }
      if (end != std::string_view::npos && takeTag(number, inside)) return true;
    }
    if (line.front() != '#') addUntimed(number, line);
    return true;
  }

  LyricFile result() && {
    if (file_.lines.empty()) {
      takeUntimed();
    } else {
      reportUntimed();
      addTranslations();
      for (FileLine& line : file_.lines) line.time = std::max(*line.time - file_.offset, 0.0);
    }
    leaveOutCredits(file_, problems_);
    return finished(std::move(file_), std::move(problems_),
                    "a line of LRC reads [mm:ss.xx] and the text");
  }

 private:
  bool takeTag(int number, std::string_view inside) {
    const std::size_t colon = inside.find(':');
    if (colon == std::string_view::npos || !isTagKey(inside.substr(0, colon))) return false;
    const std::string key = lowerCase(inside.substr(0, colon));
    const std::string_view value = trimmed(inside.substr(colon + 1));
    if (key == "offset") {
      takeOffset(number, value);
    } else if (!value.empty() && file_.tags.size() < 50) {
      file_.tags.emplace(key, cleaned(cut(value, longestText)));
    }
    return true;
  }

  void takeOffset(int number, std::string_view value) {
    if (!value.empty() && value.front() == '+') value.remove_prefix(1);
    const auto milliseconds = parseNumber(value);
    if (!milliseconds || !(std::abs(*milliseconds) <= largestOffset)) {
      problems_.warn(number, "the offset " + inQuotes(value) + " is no number of milliseconds",
                     "write it as [offset:250], or leave the tag out");
      return;
    }
    file_.offset = *milliseconds / 1000;
  }

  bool addTimed(int number, const std::vector<double>& times, std::string_view rest) {
    if (rest.size() > longestText) {
      problems_.warn(number, "the line is longer than " + std::to_string(longestText) + " bytes",
                     "it is cut there; put each sung line on a line of its own");
    }
    const std::string text = sungText(rest);
    for (const double time : times) {
      if (!hasRoom(file_, problems_, number)) return false;
      file_.lines.push_back({time, text, {}, number});
    }
    return true;
  }

  void addMarked(int number, const std::vector<double>& times, std::string_view rest) {
    if (marked_.size() >= mostLines) return;
    const std::string text = sungText(cut(rest, longestText));
    for (const double time : times) marked_.push_back({time, text, {}, number});
    if (times.empty() && !file_.lines.empty()) file_.lines.back().translation = text;
    file_.mayBeBilingual = false;
  }

  // Each to the first line of its time that has none.
  void addTranslations() {
    std::ranges::stable_sort(file_.lines, {}, [](const FileLine& line) { return *line.time; });
    for (const FileLine& mark : marked_) {
      auto line = std::ranges::lower_bound(file_.lines, *mark.time - roundingError, {},
                                           [](const FileLine& one) { return *one.time; });
      const auto here = [&] {
        return line != file_.lines.end() && *line->time < *mark.time + roundingError;
      };
      while (here() && (line->text.empty() || !line->translation.empty())) ++line;
      if (here()) line->translation = mark.text;
    }
  }

  void addUntimed(int number, std::string_view line) {
    if (untimed_.size() == mostLines) {
      if (untimedRest_ == 0) untimedRest_ = number;
      return;
    }
    untimed_.push_back({std::nullopt, sungText(cut(line, longestText)), {}, number});
  }

  void takeUntimed() {
    if (untimed_.empty()) return;
    problems_.warn(untimed_.front().number, "no line has a time stamp",
                   "the file is taken as plain text; a line of LRC reads [mm:ss.xx] and the text");
    file_.lines = std::move(untimed_);
    if (untimedRest_ > 0) hasRoom(file_, problems_, untimedRest_);  // tells that it has none
  }

  void reportUntimed() {
    file_.lost += untimed_.size();
    for (const FileLine& line : untimed_) {
      problems_.warn(line.number, "no time stamp before " + inQuotes(line.text),
                     "the line is left out; begin it with [mm:ss.xx]");
    }
  }

  Problems problems_;
  LyricFile file_;
  std::vector<FileLine> untimed_;
  std::vector<FileLine> marked_;  // translations that are marked as such
  int untimedRest_ = 0;  // the first line that has no place among them; 0 where there is none
};

}  // namespace

LyricFile readLrc(std::string_view name, std::string_view text) {
  Reader reader(name);
  forEachLine(text, [&](int number, std::string_view line) { return reader.take(number, line); });
  return std::move(reader).result();
}

}  // namespace vellora::companion
