#include "companion/lyrics/srt.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

using OverlayMatching::trimmed;

constexpr std::string_view arrow = "-->";
constexpr std::size_t longestTag = 60;
constexpr const char* timeAdvice =
    "write it as 00:01:02,000 --> 00:01:05,000; the block is left out";

bool isNumber(std::string_view text) {
  return !text.empty() && text.size() < 10 &&
         std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// The line of a block's times, but for what stands between the two.
bool looksLikeTimes(std::string_view line) {
  return looksLikeStamp(line) && looksLikeStamp(line.substr(line.find_last_of(" \t") + 1));
}

// How long the tag is that the text begins with: "<…>" with a letter or a slash first, or "{\…}".
std::size_t tagLength(std::string_view text) {
  const bool angle = text.front() == '<';
  const std::size_t end = text.substr(0, longestTag).find(angle ? '>' : '}');
  const char second = text.size() > 1 ? text[1] : ' ';
  const bool letter = (second >= 'a' && second <= 'z') || (second >= 'A' && second <= 'Z');
  const bool tag = angle ? letter || second == '/' : second == '\\';
  return tag && end != std::string_view::npos ? end + 1 : 0;
}

class Reader {
 public:
  explicit Reader(std::string_view name) : problems_(name) {
    file_.name = name;
    file_.mayBeBilingual = true;
  }

  bool take(int number, std::string_view raw) {
    const std::string_view line = trimmed(cut(raw, 4 * longestText));
    if (line.find(arrow) != std::string_view::npos) {
      takeTime(number, line);
      return true;
    }
    if (line.empty()) {
      time_.reset();
      lost_ = false;
      return true;
    }
    if (!time_) {
      takeOutside(number, line);
      return true;
    }
    if (!hasRoom(file_, problems_, number)) return false;
    file_.lines.push_back(
        {time_, cleaned(cut(withoutMarks(line, "<{", tagLength), longestText)), {}, number});
    return true;
  }

  LyricFile result() && {
    return finished(std::move(file_), std::move(problems_),
                    "a block of SRT is a number, a line \"00:01:02,000 --> 00:01:05,000\", the "
                    "text, and a blank line");
  }

 private:
  void takeTime(int number, std::string_view line) {
    const std::string_view begin = trimmed(line.substr(0, line.find(arrow)));
    time_ = parseTime(begin);
    lost_ = !time_;
    if (lost_) {
      problems_.warn(number, "the time " + inQuotes(begin) + " cannot be read", timeAdvice);
    }
  }

  // A number and "WEBVTT" stand outside of blocks; text does only by mistake. The first line of
  // what is lost is told, for all of it.
  void takeOutside(int number, std::string_view line) {
    if (isNumber(line) || (!lost_ && line.starts_with("WEBVTT"))) return;
    const bool time = !lost_ && looksLikeTimes(line);
    if (!time) ++file_.lost;
    if (time) {
      problems_.warn(number, "no \"-->\" in " + inQuotes(line), timeAdvice);
    } else if (!lost_) {
      problems_.warn(number, "no time before " + inQuotes(line),
                     "up to the next blank line all is left out; a block begins with a line "
                     "\"00:01:02,000 --> 00:01:05,000\" and has no blank line in it");
    }
    lost_ = true;
  }

  Problems problems_;
  LyricFile file_;
  std::optional<double> time_;  // of the block; nothing outside of blocks
  bool lost_ = false;           // what comes up to a blank line or a time is left out
};

}  // namespace

LyricFile readSrt(std::string_view name, std::string_view text) {
  Reader reader(name);
  forEachLine(text, [&](int number, std::string_view line) { return reader.take(number, line); });
  return std::move(reader).result();
}

}  // namespace vellora::companion
