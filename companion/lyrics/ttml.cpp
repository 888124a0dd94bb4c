#include "companion/lyrics/ttml.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pugixml.hpp>

#include "base/number_text.h"
#include "companion/lyrics/language_lookup.h"
#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

using OverlayMatching::trimmed;

// The part of a name after its namespace's prefix, which each document chooses for itself.
std::string_view localName(std::string_view name) { return name.substr(name.rfind(':') + 1); }

bool isNamed(const pugi::xml_node& node, std::string_view name) {
  return node.type() == pugi::node_element && localName(node.name()) == name;
}

std::string_view attribute(const pugi::xml_node& node, std::string_view name) {
  for (const pugi::xml_attribute& each : node.attributes()) {
    if (localName(each.name()) == name) return each.value();
  }
  return {};
}

// The next node in the document's order, within `root` and, where `inside` is false, not below
// `node`. Without recursion: a document may nest as deep as it likes.
pugi::xml_node following(pugi::xml_node node, const pugi::xml_node& root, bool inside = true) {
  if (inside && node.first_child()) return node.first_child();
  while (node && node != root && !node.next_sibling()) node = node.parent();
  return node && node != root ? node.next_sibling() : pugi::xml_node();
}

// A time expression (TTML 2, section 12.3.1): a clock time, or a number with h, m, s or ms. Frames
// and ticks depend on rates that lyrics have no use for.
std::optional<double> timeExpression(std::string_view text) {
  text = trimmed(text);
  if (text.find(':') != std::string_view::npos) return parseTime(text);
  const std::size_t unit = text.find_first_not_of("0123456789.");
  const auto number = parseNumber(text.substr(0, unit));
  if (!number || *number > 360'000'000) return std::nullopt;
  const std::string_view name = unit == std::string_view::npos ? "s" : text.substr(unit);
  if (name == "h") return *number * 3600;
  if (name == "m") return *number * 60;
  if (name == "s") return number;
  if (name == "ms") return *number / 1000;
  return std::nullopt;
}

// The lines that a document position lies in.
class LineNumbers {
 public:
  explicit LineNumbers(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '\n') ends_.push_back(i);
    }
  }
  int at(std::ptrdiff_t offset) const {
    if (offset < 0) return 0;
    const auto after = std::ranges::lower_bound(ends_, static_cast<std::size_t>(offset));
    return static_cast<int>(after - ends_.begin()) + 1;
  }

 private:
  std::vector<std::size_t> ends_;
};

// A <p> taken apart.
struct Paragraph {
  std::vector<std::string> lines{1};
  std::vector<std::pair<std::string, std::string>> translations;  // language and text
};

std::string textOf(const pugi::xml_node& root) {
  std::string text;
  for (auto node = following(root, root); node && text.size() < 4 * longestText;
       node = following(node, root)) {
    if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) text += node.value();
  }
  return cleaned(cut(text, longestText));
}

Paragraph takenApart(const pugi::xml_node& root) {
  constexpr std::size_t mostParts = 50;
  Paragraph result;
  bool inside = true;
  for (auto node = following(root, root); node; node = following(node, root, inside)) {
    inside = true;
    if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
      if (result.lines.back().size() < 4 * longestText) result.lines.back() += node.value();
    } else if (isNamed(node, "br")) {
      if (result.lines.size() < mostParts) result.lines.emplace_back();
    } else if (const auto role = attribute(node, "role"); role.starts_with("x-")) {
      inside = false;
      if (role == "x-translation" && result.translations.size() < mostParts) {
        result.translations.emplace_back(attribute(node, "lang"), textOf(node));
      }
    }
  }
  for (std::string& line : result.lines) line = cleaned(cut(line, longestText));
  std::erase_if(result.lines, [](const std::string& line) { return line.empty(); });
  return result;
}

constexpr std::size_t mostLanguages = 50;

class Reader {
 public:
  Reader(std::string_view name, std::string_view text, std::string_view wanted)
      : problems_(name), numbers_(text), wanted_(wanted) {
    file_.name = name;
  }

  LyricFile read(std::string_view text) && {
    pugi::xml_document document;
    const auto parsed = document.load_buffer(
        text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata, pugi::encoding_utf8);
    if (!parsed) {
      problems_.fail(numbers_.at(parsed.offset), std::string("not XML: ") + parsed.description(),
                     "look there for a tag that is not closed, or an & that is not &amp;");
      file_.lost = mostLines;
    } else {
      takeDocument(document);
    }
    return finished(std::move(file_), std::move(problems_),
                    "a line of TTML is <p begin=\"1:02.5\" end=\"1:05\">text</p>");
  }

 private:
  void takeDocument(const pugi::xml_document& document) {
    bool inside = true;
    for (auto node = following(document, document); node;
         node = following(node, document, inside)) {
      // Each of these is looked through as a whole, and not once more for what nests in it.
      inside = false;
      if (isNamed(node, "title")) {
        if (std::string title = textOf(node); !title.empty()) file_.tags.emplace("ti", title);
      } else if (isNamed(node, "translation")) {
        takeTranslation(node);
      } else if (isNamed(node, "p")) {
        if (!takeParagraph(node)) break;
      } else {
        inside = true;
      }
    }
    settleTimes();
  }

  // In the head, before the lines that it is for.
  void takeTranslation(const pugi::xml_node& node) {
    note(attribute(node, "lang"));
    const int far = remoteness(attribute(node, "lang"), wanted_);
    if (!byKey_.empty() && far >= farness_) return;
    farness_ = far;
    byKey_.clear();
    bool inside = true;
    for (auto text = following(node, node); text && byKey_.size() < mostLines;
         text = following(text, node, inside)) {
      inside = !isNamed(text, "text");
      if (!inside) byKey_.emplace(attribute(text, "for"), textOf(text));
    }
  }

  bool takeParagraph(const pugi::xml_node& node) {
    const int number = numbers_.at(node.offset_debug());
    Paragraph paragraph = takenApart(node);
    if (paragraph.lines.empty()) return true;
    const std::string_view begin = attribute(node, "begin");
    std::optional<double> time = timeExpression(begin);
    if (!begin.empty() && !time) {
      file_.lost += paragraph.lines.size();
      problems_.warn(number, "the time " + inQuotes(begin) + " cannot be read",
                     "write it as 1:02.5 or 62.5s; the line is left out");
      return true;
    }
    for (const auto& [language, text] : paragraph.translations) note(language);
    std::string translation = translationOf(paragraph, attribute(node, "key"));
    for (std::string& line : paragraph.lines) {
      if (!hasRoom(file_, problems_, number)) return false;
      file_.lines.push_back({time, std::move(line), std::exchange(translation, {}), number});
    }
    return true;
  }

  void note(std::string_view language) {
    if (!language.empty() && file_.languages.size() < mostLanguages) {
      file_.languages.emplace(language);
    }
  }

  std::string translationOf(const Paragraph& paragraph, std::string_view key) const {
    const auto nearest =
        std::ranges::min_element(paragraph.translations, [&](const auto& a, const auto& b) {
          return remoteness(a.first, wanted_) < remoteness(b.first, wanted_);
        });
    if (nearest != paragraph.translations.end()) return nearest->second;
    const auto found = byKey_.find(std::string(key));
    return found == byKey_.end() || key.empty() ? std::string() : found->second;
  }

  // Some lines with times and some without cannot be put in one order.
  void settleTimes() {
    const auto timed = [](const FileLine& line) { return line.time.has_value(); };
    if (std::ranges::none_of(file_.lines, timed)) return;
    for (const FileLine& line : file_.lines) {
      if (timed(line)) continue;
      ++file_.lost;
      problems_.warn(line.number, "no \"begin\" for " + inQuotes(line.text),
                     "the line is left out; give it one");
    }
    std::erase_if(file_.lines, [&](const FileLine& line) { return !timed(line); });
  }

  Problems problems_;
  LineNumbers numbers_;
  std::string wanted_;
  LyricFile file_;
  std::map<std::string, std::string> byKey_;
  int farness_ = 0;  // of the language of these
};

}  // namespace

LyricFile readTtml(std::string_view name, std::string_view text, std::string_view wantedLanguage) {
  return Reader(name, text, wantedLanguage).read(text);
}

}  // namespace vellora::companion
