#include <optional>
#include <string>
#include <utility>

#include "companion/lyrics/table.h"
#include "companion/song/text.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

using OverlayMatching::trimmed;

// The text between double quotes with C's escapes undone; nothing where the quotes are not whole.
std::optional<std::string> unquoted(std::string_view text) {
  if (text.size() < 2 || text.front() != '"') return std::nullopt;
  std::string result;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return i + 1 == text.size() ? std::optional(result) : std::nullopt;
    if (text[i] != '\\') {
      result.push_back(text[i]);
      continue;
    }
    if (++i == text.size()) return std::nullopt;
    switch (text[i]) {
      case 'n':
        result.push_back('\n');
        break;
      case 't':
        result.push_back('\t');
        break;
      case 'r':
        break;
      default:
        result.push_back(text[i]);
    }
  }
  return std::nullopt;
}

class Reader {
 public:
  explicit Reader(std::string_view name) : problems_(name) {
    file_.name = name;
    file_.isTable = true;
  }

  bool take(int number, std::string_view raw) {
    const std::string_view line = trimmed(cut(raw, 4 * longestText));
    if (line.empty()) return true;
    if (line.front() == '#') {
      const bool flags = line.starts_with("#,");
      if (translation_ || flags) flush();
      if (flags && line.find("fuzzy") != std::string_view::npos) fuzzy_ = true;
    } else if (line.front() == '"') {
      continueWith(number, line);
    } else {
      const std::size_t end = line.find_first_of(" \t\"");
      begin(number, line.substr(0, end),
            end == std::string_view::npos ? std::string_view() : trimmed(line.substr(end)));
    }
    return !full_;
  }

  LyricFile result() && {
    flush();
    return finished(std::move(file_), std::move(problems_),
                    "an entry is a line msgid \"…\" and a line msgstr \"…\"");
  }

 private:
  void begin(int number, std::string_view keyword, std::string_view rest) {
    if (keyword == "msgctxt" || keyword == "msgid") {
      if (keyword == "msgid" || source_) flush();
      open_ = nullptr;
      if (keyword == "msgctxt") return open(number, ignored_.emplace(), rest);
      number_ = number;
      return open(number, source_.emplace(), rest);
    }
    if (keyword == "msgstr" && source_ && !translation_) {
      return open(number, translation_.emplace(), rest);
    }
    open_ = nullptr;
    if (keyword == "msgstr") {
      ++file_.lost;
      problems_.warn(number, "msgstr without a msgid before it",
                     "put the line that is translated before it, as msgid \"…\"");
    } else {
      problems_.warn(number, inQuotes(keyword) + " is nothing that a song's table has",
                     "an entry is a line msgid \"…\" and a line msgstr \"…\"");
    }
  }

  void open(int number, std::string& text, std::string_view rest) {
    open_ = &text;
    continueWith(number, rest);
  }

  void continueWith(int number, std::string_view text) {
    const auto piece = unquoted(text);
    if (!piece) {
      ++file_.lost;
      problems_.warn(number, inQuotes(text) + " is not in whole double quotes",
                     "a quote within the text is written \\\"");
      return;
    }
    if (open_ != nullptr && open_->size() < 4 * longestText) open_->append(*piece);
  }

  void flush() {
    if (source_ && !translation_) {
      ++file_.lost;
      problems_.warn(number_, "msgid without a msgstr after it", "add msgstr \"…\"");
    }
    if (source_ && translation_ && source_->empty()) {
      takeHeader(*translation_);
    } else if (source_ && translation_) {
      add();
    }
    if (source_) fuzzy_ = false;  // else it is the mark of the entry that begins
    source_.reset();
    translation_.reset();
    open_ = nullptr;
  }

  void add() {
    if (fuzzy_) {
      ++file_.lost;
      problems_.note(number_, "the entry is fuzzy, and left out",
                     "look at it and remove the mark \"#, fuzzy\"");
      return;
    }
    full_ = !hasRoom(file_, problems_, number_);
    if (full_) return;
    file_.lines.push_back({std::nullopt, cleaned(cut(*source_, longestText)),
                           cleaned(cut(*translation_, longestText)), number_});
  }

  void takeHeader(std::string_view header) {
    forEachLine(header, [&](int, std::string_view line) {
      const std::size_t colon = line.find(':');
      if (colon == std::string_view::npos) return true;
      const std::string key = lowerCase(line.substr(0, colon));
      const std::string value = cleaned(line.substr(colon + 1));
      if (key == "x-title") file_.tags.emplace("ti", value);
      if (key == "x-artist") file_.tags.emplace("ar", value);
      if (key == "language" && !value.empty()) file_.tags.emplace("la", value);
      return true;
    });
  }

  Problems problems_;
  LyricFile file_;
  std::optional<std::string> ignored_;
  std::optional<std::string> source_;
  std::optional<std::string> translation_;
  std::string* open_ = nullptr;  // the text that a line in quotes goes on
  int number_ = 0;               // of the msgid
  bool fuzzy_ = false;
  bool full_ = false;
};

}  // namespace

LyricFile readPo(std::string_view name, std::string_view text) {
  Reader reader(name);
  forEachLine(text, [&](int number, std::string_view line) { return reader.take(number, line); });
  return std::move(reader).result();
}

}  // namespace vellora::companion
