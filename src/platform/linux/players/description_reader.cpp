#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "base/nearest_word.h"
#include "base/utf8.h"
#include "platform/linux/glib/quoted_text.h"
#include "platform/linux/players/browser_windows.h"
#include "platform/linux/players/key_file_text.h"
#include "platform/linux/players/pattern_values.h"
#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/players/role_names.h"

namespace vellora {

namespace {

constexpr std::size_t largestFile = std::size_t{64} * 1024;

struct PatternGroup {
  std::string_view name;
  ElementPattern LyricsPattern::*pattern;
};
constexpr std::array patternGroups{PatternGroup{"Container", &LyricsPattern::container},
                                   PatternGroup{"Lyrics", &LyricsPattern::view},
                                   PatternGroup{"Viewport", &LyricsPattern::viewport},
                                   PatternGroup{"Row", &LyricsPattern::row},
                                   PatternGroup{"RowText", &LyricsPattern::rowText},
                                   PatternGroup{"RowFrame", &LyricsPattern::rowFrame},
                                   PatternGroup{"Title", &LyricsPattern::title},
                                   PatternGroup{"Artist", &LyricsPattern::artist}};
constexpr std::array<std::string_view, 10> groupNames{"Player",   "Window", "Container", "Lyrics",
                                                      "Viewport", "Row",    "RowText",   "RowFrame",
                                                      "Title",    "Artist"};

// "Role, Name and Id"
template <typename Names>
std::string enumeration(const Names& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
    text += names[i];
  }
  return text;
}

class DescriptionReader {
 public:
  explicit DescriptionReader(const std::string& file)
      : file_(file), tell_([this](int line, std::string text, std::string remedy) {
          tell(line, std::move(text), std::move(remedy));
        }) {}

  ReadDescription read(std::string_view text) {
    description_.file = file_;
    description_.identifier = std::filesystem::path(file_).stem().string();
    if (isReadable(text)) {
      groups_ = readKeyFile(text, tell_);
      for (const KeyFileGroup& group : groups_) readGroup(group);
      demandWhatIsMissing();
    }
    std::ranges::stable_sort(problems_, {}, &DescriptionProblem::line);
    if (!problems_.empty()) return {.description = nullptr, .problems = std::move(problems_)};
    return {.description = std::make_shared<const PlayerDescription>(std::move(description_)),
            .problems = {}};
  }

 private:
  // A list's values, each with what is wrong with it; `keep` takes those that are right.
  struct Key {
    std::string_view name;
    ValueCheck check;
    std::function<void(const std::string&)> keep;
    bool isList = true;
  };

  void tell(int line, std::string text, std::string remedy) {
    problems_.push_back(
        {.file = file_, .line = line, .text = std::move(text), .remedy = std::move(remedy)});
  }

  bool isReadable(std::string_view text) {
    if (text.size() > largestFile) {
      tell(0, "more than 64 KiB", "a description is a few lines; is this the right file?");
    } else if (text.find('\0') != std::string_view::npos) {
      tell(lineAt(text, text.find('\0')), "a zero byte", "save the file as plain text in UTF-8");
    } else if (!isWellFormed(text)) {
      tell(lineAt(text, firstMalformed(text)), "bytes that are not UTF-8",
           "save the file as plain text in UTF-8");
    } else if (text.starts_with("\xEF\xBB\xBF")) {
      tell(1, "a byte order mark at the beginning", "save the file as UTF-8 without it");
    } else {
      return true;
    }
    return false;
  }

  static int lineAt(std::string_view text, std::size_t offset) {
    return 1 + static_cast<int>(std::ranges::count(text.substr(0, offset), '\n'));
  }

  static std::size_t firstMalformed(std::string_view text) {
    std::size_t offset = 0;
    while (offset < text.size()) {
      const std::size_t begin = offset;
      nextCharacter(text, offset);
      if (!isWellFormed(text.substr(begin, offset - begin))) return begin;
    }
    return offset;
  }

  void readGroup(const KeyFileGroup& group) {
    if (group.name == "Player") {
      readKeys(group, {Key{"Name", checkText, into(description_.name), false}});
    } else if (group.name == "Window") {
      const auto keepWindow = [&classes = description_.windowClasses](const std::string& name) {
        if (name != browsersWord) return classes.push_back(name);
        classes.insert(classes.end(), browserWindowClasses().begin(), browserWindowClasses().end());
      };
      readKeys(group, {Key{"Class", checkWindowClass, keepWindow},
                       Key{"Document", checkDocument, into(description_.documents)}});
    } else {
      const auto known = std::ranges::find(patternGroups, group.name, &PatternGroup::name);
      if (known == patternGroups.end()) return tellUnknownGroup(group);
      ElementPattern& pattern = lyrics_.*known->pattern;
      const auto keepRole = [&pattern](const std::string& role) {
        pattern.roles.push_back(roleNumber(role).value());
      };
      std::vector keys{
          Key{"Role", checkRole, keepRole}, Key{"Name", checkText, into(pattern.names)},
          Key{"Class", checkClass, into(pattern.classes)}, Key{"Id", checkId, into(pattern.ids)}};
      if (group.name == "Row") {
        keys.push_back({"Frame", checkFrame,
                        [this](const std::string& of) { lyrics_.isFrameOfText = of == "text"; },
                        false});
      }
      readKeys(group, keys);
      const auto isOfPattern = [](const KeyFileEntry& entry) { return entry.key != "Frame"; };
      if (std::ranges::none_of(group.entries, isOfPattern)) tellEmptyPattern(group);
    }
  }

  static std::function<void(const std::string&)> into(std::string& text) {
    return [&text](const std::string& value) { text = value; };
  }
  static std::function<void(const std::string&)> into(std::vector<std::string>& list) {
    return [&list](const std::string& value) { list.push_back(value); };
  }

  void readKeys(const KeyFileGroup& group, const std::vector<Key>& keys) {
    for (const KeyFileEntry& entry : group.entries) {
      const auto key = std::ranges::find(keys, entry.key, &Key::name);
      if (key != keys.end()) {
        readValue(entry, *key);
        continue;
      }
      std::vector<std::string_view> names;
      for (const Key& known : keys) names.push_back(known.name);
      tell(entry.line, "unknown key " + inQuotes(entry.key) + " in " + inBrackets(group.name),
           meant(nearestWord(entry.key, names),
                 (names.size() == 1 ? "its key is " : "its keys are ") + enumeration(names)));
    }
  }

  void readValue(const KeyFileEntry& entry, const Key& key) {
    const std::string name(key.name);
    if (entry.value.empty()) {
      return tell(entry.line, "nothing after " + name + "=", "write a value, or take the line out");
    }
    const auto parts = key.isList ? keyFileParts(entry.value) : std::vector{entry.value};
    for (const std::string& part : parts) {
      if (part.empty()) {
        tell(entry.line, "an empty value in the list " + name, "take the second ; out");
      } else if (part.front() == ' ' || part.front() == '\t' || part.back() == ' ' ||
                 part.back() == '\t') {
        tell(entry.line, "a blank before or after " + inQuotes(part) + " in " + name,
             "take it out; one that belongs there is written \\s");
      } else if (const auto value = key.isList ? keyFilePart(part) : keyFileString(part); !value) {
        tell(entry.line, "an unknown escape in " + inQuotes(part),
             "write \\\\ for a backslash and \\; for a semicolon");
      } else if (auto problem = key.check(*value)) {
        tell(entry.line, std::move(problem->text), std::move(problem->remedy));
      } else {
        key.keep(*value);
      }
    }
  }

  static std::string meant(std::string_view likely, const std::string& otherwise) {
    return likely.empty() ? otherwise
                          : "what is meant may be " + std::string(likely) + "; " + otherwise;
  }

  void tellUnknownGroup(const KeyFileGroup& group) {
    tell(group.line, "unknown group " + inBrackets(group.name),
         meant(nearestWord(group.name, groupNames), "the groups are " + enumeration(groupNames)));
  }

  void tellEmptyPattern(const KeyFileGroup& group) {
    const bool isNeeded = group.name == "Lyrics" || group.name == "Row";
    tell(group.line, "nothing in " + inBrackets(group.name) + ", so that every element would fit",
         isNeeded ? "write Role=, Name=, Class= or Id= below it" : "take the group out");
  }

  const KeyFileGroup* find(std::string_view name) const {
    const auto found = std::ranges::find(groups_, name, &KeyFileGroup::name);
    return found == groups_.end() ? nullptr : &*found;
  }

  void demandKey(const char* groupName, const char* key, const char* remedy) {
    const KeyFileGroup* const group = find(groupName);
    const std::string name = std::string("[") + groupName + "]";
    if (group == nullptr) return tell(0, "no " + name, remedy);
    if (std::ranges::count(group->entries, key, &KeyFileEntry::key) == 0) {
      tell(group->line, std::string("no ") + key + " in " + name, remedy);
    }
  }

  void demandWhatIsMissing() {
    demandKey("Player", "Name", "write [Player] and below it Name= with the player's name");
    demandKey("Window", "Class",
              "write [Window] and below it Class= with the class of the player's window");
    const KeyFileGroup* const lyrics = find("Lyrics");
    if (lyrics != nullptr) {
      if (find("Row") == nullptr)
        tell(lyrics->line, "no [Row] beside [Lyrics]", "say what a row is");
      if (find("Title") == nullptr && find("Artist") != nullptr) {
        tell(find("Artist")->line, "no [Title] beside [Artist]",
             "say which element has the title, or take [Artist] out");
      }
      if (lyrics_.isFrameOfText && find("RowFrame") != nullptr) {
        tell(find("RowFrame")->line, "[RowFrame] beside Frame=text in [Row]",
             "take one of them out; Frame=text takes the text that [RowText] names");
      }
      description_.lyrics = std::move(lyrics_);
      return;
    }
    for (const KeyFileGroup& group : groups_) {
      if (std::ranges::count(patternGroups, group.name, &PatternGroup::name) == 0) continue;
      tell(group.line, "no [Lyrics] beside " + inBrackets(group.name),
           "say which element holds the rows");
    }
    if (!description_.documents.empty()) {
      tell(find("Window")->line, "no [Lyrics] for a page",
           "say which element holds the rows, or take Document= out");
    }
  }

  const std::string& file_;
  TellProblem tell_;
  std::vector<KeyFileGroup> groups_;
  PlayerDescription description_;
  LyricsPattern lyrics_;
  std::vector<DescriptionProblem> problems_;
};

}  // namespace

ReadDescription readDescription(std::string_view text, const std::string& file) {
  return DescriptionReader(file).read(text);
}

}  // namespace vellora
