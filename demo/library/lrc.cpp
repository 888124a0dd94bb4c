#include "library/lrc.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "base/utf8.h"

namespace vellora::demo {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::optional<int> twoDigits(std::string_view text) {
  if (text.size() < 2 || !isDigit(text[0]) || !isDigit(text[1])) return std::nullopt;
  return (text[0] - '0') * 10 + (text[1] - '0');
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Takes the file line by line; the first error ends it.
class Reader {
 public:
  Reader(std::string_view name, const std::vector<std::string>& allowedTags)
      : allowedTags_(allowedTags) {
    file_.name = name;
  }

  std::optional<SongError> take(int number, std::string_view raw) {
    number_ = number;
    if (!isWellFormed(raw)) return error("not UTF-8");
    const std::string_view line = trimmed(raw);
    if (line.empty() || line.front() == '#') return std::nullopt;
    if (line.front() != '[') return error("neither a tag nor a line with a time stamp");
    const std::size_t end = line.find(']');
    if (end == std::string_view::npos) return error("\"[\" without \"]\"");
    const std::string_view inside = line.substr(1, end - 1);
    const std::string_view after = trimmed(line.substr(end + 1));
    if (!inside.empty() && isDigit(inside.front())) return takeLine(inside, after);
    return takeTag(inside, after);
  }

  LrcFile result() && { return std::move(file_); }

 private:
  SongError error(std::string message) const { return {file_.name, number_, std::move(message)}; }

  std::optional<SongError> takeTag(std::string_view inside, std::string_view after) {
    const std::size_t colon = inside.find(':');
    if (colon == std::string_view::npos) return error("a tag without \":\"");
    const std::string key(inside.substr(0, colon));
    const std::string value(trimmed(inside.substr(colon + 1)));
    if (std::find(allowedTags_.begin(), allowedTags_.end(), key) == allowedTags_.end()) {
      return error("unknown tag \"" + key + "\"");
    }
    if (value.empty()) return error("tag \"" + key + "\" is empty");
    if (!after.empty()) return error("text after tag \"" + key + "\"");
    if (!file_.lines.empty()) return error("tag \"" + key + "\" after the first line");
    if (!file_.tags.emplace(key, value).second) return error("tag \"" + key + "\" occurs twice");
    return std::nullopt;
  }

  std::optional<SongError> takeLine(std::string_view stamp, std::string_view text) {
    const int time = parseStamp(stamp);
    if (time < 0 || stamp.size() != 8) return error("the time stamp is not of the form mm:ss.cc");
    if (text.empty()) return error("a time stamp without text");
    if (text.front() == '[') return error("more than one time stamp in a line");
    if (!file_.lines.empty() && time <= file_.lines.back().centiseconds) {
      return error("the time stamp is not later than the one before");
    }
    file_.lines.push_back({time, std::string(text), number_});
    return std::nullopt;
  }

  const std::vector<std::string>& allowedTags_;
  LrcFile file_;
  int number_ = 0;
};

}  // namespace

std::string SongError::text() const {
  std::string result = file;
  if (line > 0) result.append(":").append(std::to_string(line));
  return result.append(": ").append(message);
}

int parseStamp(std::string_view text) {
  if (text.size() != 5 && text.size() != 8) return -1;
  const auto minutes = twoDigits(text);
  const auto seconds = twoDigits(text.substr(3));
  if (!minutes || !seconds || text[2] != ':' || *seconds > 59) return -1;
  int hundredths = 0;
  if (text.size() == 8) {
    const auto fraction = twoDigits(text.substr(6));
    if (!fraction || text[5] != '.') return -1;
    hundredths = *fraction;
  }
  return (*minutes * 60 + *seconds) * 100 + hundredths;
}

std::variant<LrcFile, SongError> parseLrc(std::string_view name, std::string_view text,
                                          const std::vector<std::string>& allowedTags) {
  Reader reader(name, allowedTags);
  int number = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (auto error = reader.take(++number, line)) return *std::move(error);
  }
  return std::move(reader).result();
}

}  // namespace vellora::demo
