#include "platform/linux/players/key_file_text.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/linux/glib/quoted_text.h"

namespace vellora {

namespace {

constexpr std::string_view blanks = " \t";

std::string_view withoutBlanks(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
  return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

bool isControl(char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\x7f'; }

std::optional<char> escapedCharacter(char letter, bool isPart) {
  switch (letter) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case '\\':
      return '\\';
    case ';':
      return isPart ? std::optional(';') : std::nullopt;
    default:
      return std::nullopt;
  }
}

std::optional<std::string> withoutEscapes(const std::string& value, bool isPart) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\') {
      text += value[i];
    } else {
      const auto character = ++i < value.size() ? escapedCharacter(value[i], isPart) : std::nullopt;
      if (!character) return std::nullopt;
      text += *character;
    }
  }
  return text;
}

class KeyFileReader {
 public:
  explicit KeyFileReader(const TellProblem& tell) : tell_(tell) {}

  std::vector<KeyFileGroup> read(std::string_view text) {
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = std::min(text.find('\n', begin), text.size());
      ++line_;
      readLine(text.substr(begin, end - begin));
      begin = end + 1;
    }
    return std::move(groups_);
  }

 private:
  void readLine(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (std::ranges::any_of(line, isControl)) {
      tell_(line_, "a control character in the line", "take it out");
      return;
    }
    const std::size_t begin = line.find_first_not_of(blanks);
    if (begin == std::string_view::npos || line[begin] == '#') return;
    line.remove_prefix(begin);
    line.front() == '[' ? readGroup(line) : readEntry(line);
  }

  void readGroup(std::string_view line) {
    line = withoutBlanks(line);
    const std::size_t end = line.find_first_of("[]", 1);
    if (end + 1 != line.size() || line.back() != ']' || end == 1) {
      tell_(line_, "a group's line that is not as [Row]", "write its name between [ and ] alone");
      return;
    }
    const std::string name = std::string(line.substr(1, end - 1));
    const auto same = std::ranges::find(groups_, name, &KeyFileGroup::name);
    if (same != groups_.end()) {
      tell_(line_, "a second " + inBrackets(name),
            "write its keys below the first, in line " + std::to_string(same->line));
    }
    groups_.push_back({.name = name, .line = line_, .entries = {}});
  }

  void readEntry(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || equals == 0) {
      tell_(line_, "neither a group [NAME] nor a line KEY=VALUE",
            "begin a remark with #, and write a list in one line");
      return;
    }
    KeyFileEntry entry{.key = std::string(withoutBlanks(line.substr(0, equals))),
                       .value = std::string(line.substr(equals + 1)),
                       .line = line_};
    entry.value.erase(0, std::min(entry.value.find_first_not_of(blanks), entry.value.size()));
    if (groups_.empty()) {
      tell_(line_, "a key before the first group", "write [Player] above it");
      return;
    }
    auto& entries = groups_.back().entries;
    const auto same = std::ranges::find(entries, entry.key, &KeyFileEntry::key);
    if (same == entries.end()) {
      entries.push_back(std::move(entry));
    } else {
      tell_(line_, "a second " + inQuotes(entry.key) + " in " + inBrackets(groups_.back().name),
            "keep one, with ; between its values; the first is in line " +
                std::to_string(same->line));
    }
  }

  const TellProblem& tell_;
  std::vector<KeyFileGroup> groups_;
  int line_ = 0;
};

}  // namespace

std::string inBrackets(const std::string& group) { return '[' + printable(group, 40) + ']'; }

std::vector<KeyFileGroup> readKeyFile(std::string_view text, const TellProblem& tell) {
  return KeyFileReader(tell).read(text);
}

std::optional<std::string> keyFileString(const std::string& value) {
  return withoutEscapes(value, false);
}

std::vector<std::string> keyFileParts(const std::string& value) {
  std::vector<std::string> parts;
  std::string part;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == ';') {
      parts.push_back(std::exchange(part, {}));
      continue;
    }
    part += value[i];
    if (value[i] == '\\' && i + 1 < value.size()) part += value[++i];
  }
  if (!part.empty()) parts.push_back(std::move(part));  // the last semicolon may be left out
  return parts;
}

std::optional<std::string> keyFilePart(const std::string& part) {
  return withoutEscapes(part, true);
}

}  // namespace vellora
