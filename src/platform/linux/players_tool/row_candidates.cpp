#include "platform/linux/players_tool/row_candidates.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "base/utf8.h"
#include "platform/linux/glib/quoted_text.h"
#include "platform/linux/players/browser_windows.h"
#include "platform/linux/players/role_names.h"

namespace vellora {

namespace {

constexpr std::size_t fewestTexts = 3;
constexpr std::size_t longestText = 400;  // bytes of a line
constexpr std::size_t longestName = 60;   // bytes of a name that is no text

std::vector<std::string> wordsOf(const std::string& classes) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : classes + ' ') {
    if (std::string_view(" \t\n\r\f").find(c) == std::string_view::npos) {
      word += c;
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, {}));
    }
  }
  return words;
}

// Whether a description can say it as it is.
bool isWritable(const std::string& text) {
  return isWellFormed(text) && printable(text, static_cast<int>(text.size())) == text;
}

// The same of a word in the place of a glob.
bool isPlain(const std::string& word) {
  return isWritable(word) && word.find_first_of("*?") == std::string::npos;
}

class Finder {
 public:
  explicit Finder(const ElementSurvey& survey) : survey_(survey) {}

  std::vector<RowCandidate> find() {
    collect();
    std::vector<RowCandidate> candidates;
    for (auto& [pattern, members] : groups_) {
      RowCandidate candidate{.row = pattern, .view = {}, .members = members, .holder = {}};
      if (isDoubled(candidate)) continue;
      findView(candidate);
      candidates.push_back(std::move(candidate));
    }
    std::ranges::stable_sort(candidates, std::ranges::greater(), [this](const auto& candidate) {
      return std::pair(speaksOfLyrics(candidate), tops(candidate.members));
    });
    return candidates;
  }

 private:
  using Members = std::vector<std::size_t>;

  // By each class, and by the role among the children of one element.
  void collect() {
    std::map<std::string, std::size_t> byClass;
    std::map<std::pair<std::size_t, std::uint32_t>, std::size_t> byRole;
    std::vector<std::pair<ElementPattern, Members>> all;
    const auto add = [&all](auto& places, const auto& key, const ElementPattern& pattern,
                            std::size_t element) {
      const auto [place, isNew] = places.emplace(key, all.size());
      if (isNew) all.emplace_back(pattern, Members());
      all[place->second].second.push_back(element);
    };
    for (std::size_t i = 1; i < survey_.size(); ++i) {
      const SurveyedElement& element = survey_[i];
      if (element.text.empty() || element.text.size() > longestText || !element.top) continue;
      for (const std::string& word : wordsOf(element.traits.classes)) {
        if (isPlain(word)) {
          add(byClass, word, {.roles = {}, .names = {}, .classes = {word}, .ids = {}}, i);
        }
      }
      add(byRole, std::pair(*element.parent, element.traits.role),
          {.roles = {element.traits.role}, .names = {}, .classes = {}, .ids = {}}, i);
    }
    std::ranges::stable_partition(all,
                                  [](const auto& group) { return !group.first.classes.empty(); });
    for (auto& [pattern, members] : all) {
      Members outermost;
      std::set<std::string> texts;
      for (const std::size_t member : members) {
        if (std::ranges::any_of(outermost, [&](auto other) { return isInside(member, other); })) {
          continue;
        }
        outermost.push_back(member);
        texts.insert(survey_[member].text);
      }
      if (texts.size() >= fewestTexts && tops(outermost) >= fewestTexts) {
        groups_.emplace_back(pattern, std::move(outermost));
      }
    }
  }

  bool isInside(std::size_t element, std::size_t other) const {
    for (auto above = survey_[element].parent; above; above = survey_[*above].parent) {
      if (*above == other) return true;
    }
    return false;
  }

  // Whether another group has the same rows: an earlier one, or one that holds more of the same
  // list, or one around them.
  bool isDoubled(const RowCandidate& candidate) const {
    bool isBehind = false;  // the group itself was passed
    return std::ranges::any_of(groups_, [&](const auto& other) {
      if (other.first == candidate.row) {
        isBehind = true;
        return false;
      }
      const Members& members = candidate.members;
      const Members& others = other.second;
      const bool isRole = candidate.row.classes.empty();
      if (std::ranges::includes(others, members)) {
        if (isRole || others.size() == members.size()) return !isBehind || isRole;
        return commonHolder(others) == commonHolder(members);
      }
      // Words of a line, or what is inside each.
      return tops(members) <= tops(others) && std::ranges::all_of(members, [&](auto member) {
               return std::ranges::any_of(others,
                                          [&](auto around) { return isInside(member, around); });
             });
    });
  }

  // How many stand one below the other.
  std::size_t tops(const Members& members) const {
    std::set<double> tops;
    for (const std::size_t member : members) tops.insert(*survey_[member].top);
    return tops.size();
  }

  std::size_t commonHolder(const Members& members) const {
    std::size_t holder = survey_[members.front()].parent.value_or(0);
    for (const std::size_t member : members) {
      while (holder != 0 && !isInside(member, holder)) holder = survey_[holder].parent.value_or(0);
    }
    return holder;
  }

  void findView(RowCandidate& candidate) const {
    for (std::size_t holder = commonHolder(candidate.members); holder != 0;
         holder = *survey_[holder].parent) {
      for (ElementPattern& pattern : patternsOf(survey_[holder].traits)) {
        const auto first =
            std::find_if(survey_.begin() + 1, survey_.end(),
                         [&pattern](const auto& element) { return fits(pattern, element.traits); });
        if (first != survey_.begin() + static_cast<std::ptrdiff_t>(holder)) continue;
        candidate.view = std::move(pattern);
        candidate.holder = holder;
        return;
      }
    }
  }

  static std::vector<ElementPattern> patternsOf(const ElementTraits& traits) {
    std::vector<ElementPattern> patterns;
    if (!traits.id.empty() && isPlain(traits.id)) patterns.emplace_back().ids = {traits.id};
    for (const std::string& word : wordsOf(traits.classes)) {
      if (isPlain(word)) patterns.emplace_back().classes = {word};
    }
    if (!traits.name.empty() && traits.name.size() <= longestName && isWritable(traits.name)) {
      patterns.push_back(
          {.roles = {traits.role}, .names = {traits.name}, .classes = {}, .ids = {}});
    }
    patterns.emplace_back().roles = {traits.role};
    return patterns;
  }

  bool speaksOfLyrics(const RowCandidate& candidate) const {
    for (std::optional<std::size_t> i = candidate.members.front(); i; i = survey_[*i].parent) {
      const ElementTraits& traits = survey_[*i].traits;
      // The row's own name is its text.
      std::string words = traits.classes + ' ' + traits.id;
      if (*i != candidate.members.front()) words += ' ' + traits.name.substr(0, longestName);
      std::ranges::transform(words, words.begin(),
                             [](char c) { return c >= 'A' && c <= 'Z' ? c + 'a' - 'A' : c; });
      if (words.find("lyric") != std::string::npos) return true;
    }
    return false;
  }

  const ElementSurvey& survey_;
  std::vector<std::pair<ElementPattern, Members>> groups_;  // those by class first
};

std::string escaped(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool isAtEnd = i == 0 || i + 1 == text.size();
    if (c == '\\' || c == ';') {
      result += '\\';
      result += c;
    } else if (c == ' ' && isAtEnd) {
      result += "\\s";
    } else {
      result += c;
    }
  }
  return result;
}

std::string line(const char* key, const std::vector<std::string>& values) {
  if (values.empty()) return {};
  std::string text = std::string(key) + '=';
  for (const std::string& value : values) {
    if (text.back() != '=') text += ';';
    text += escaped(value);
  }
  return text + '\n';
}

// Of a window or a page, which may call themselves anything.
std::string inText(const std::string& text) { return printable(wellFormed(text), 300); }

// Scheme and host of a page, or the folder of a file.
std::string placeOf(const std::string& address) {
  const std::size_t host = address.find("://");
  if (host == std::string::npos) return address.substr(0, address.find(':') + 1);
  const bool isFile = address.starts_with("file:");
  const std::size_t end =
      isFile ? address.find_last_of('/') : std::min(address.find('/', host + 3), address.size());
  return address.substr(0, end) + '/';
}

// What to call the player: the page's host, else the window.
std::string hostOf(const std::string& place, const std::string& window) {
  const std::size_t begin = place.find("://");
  if (begin == std::string::npos || place.starts_with("file:")) return window;
  return place.substr(begin + 3, place.size() - begin - 4);
}

}  // namespace

ElementSurvey surveyOf(const std::vector<ExplainedElement>& elements) {
  ElementSurvey survey(1);
  std::vector<std::pair<int, std::size_t>> around{{std::numeric_limits<int>::min(), 0}};
  for (const ExplainedElement& element : elements) {
    while (around.back().first >= element.depth) around.pop_back();
    SurveyedElement& added = survey.emplace_back();
    added.parent = around.back().second;
    added.traits = {
        .role = element.role, .name = element.name, .classes = element.classes, .id = element.id};
    added.text = element.text;
    if (element.frame) added.top = element.frame->y;
    around.emplace_back(element.depth, survey.size() - 1);
  }
  return survey;
}

std::vector<RowCandidate> rowCandidates(const ElementSurvey& survey) {
  return Finder(survey).find();
}

std::string patternLines(const ElementPattern& pattern) {
  std::vector<std::string> roles;
  for (const std::uint32_t role : pattern.roles) roles.push_back(roleName(role));
  return line("Role", roles) + line("Name", pattern.names) + line("Class", pattern.classes) +
         line("Id", pattern.ids);
}

std::string draftDescription(const RowCandidate& candidate, const WindowNames& window,
                             const std::string& address) {
  const std::string name =
      inText(window.classPart.empty() ? window.applicationId : window.classPart);
  const bool isBrowser = std::ranges::count(browserWindowClasses(), name) > 0;
  const std::string place = address.empty() ? std::string() : inText(placeOf(address));
  std::string text = "[Player]\nName=" + hostOf(place, name) + "\n\n[Window]\n" +
                     line("Class", {isBrowser ? std::string(browsersWord) : name});
  if (!place.empty()) text += line("Document", {place + '*'});
  return text + "\n[Lyrics]\n" + patternLines(candidate.view) + "\n[Row]\n" +
         patternLines(candidate.row);
}

}  // namespace vellora
