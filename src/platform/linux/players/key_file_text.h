#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// A key file by its lines, so that what is wrong can be told with the place where it stands, and
// what GKeyFile would silently merge is seen. A text in which nothing is wrong is one that GKeyFile
// reads, with the same groups, keys and values. Any thread.
struct KeyFileEntry {
  std::string key;
  std::string value;  // as it stands there, with its escapes
  int line = 0;       // from 1
};
struct KeyFileGroup {
  std::string name;
  int line = 0;
  std::vector<KeyFileEntry> entries;
};

// A group's name as its line has it, short and without control characters.
std::string inBrackets(const std::string& group);

// Told in the order of lines; line 0: the text as a whole.
using TellProblem = std::function<void(int line, std::string text, std::string remedy)>;

// The groups of the text, which must be UTF-8 without U+0000, as far as they can be made out. A
// group or key that is there a second time is a problem.
std::vector<KeyFileGroup> readKeyFile(std::string_view text, const TellProblem& tell);

// What a value means, its escapes resolved; nothing where one of them is unknown.
std::optional<std::string> keyFileString(const std::string& value);

// The parts of a value that is a list, between semicolons, still with their escapes.
std::vector<std::string> keyFileParts(const std::string& value);

// What one of these parts means.
std::optional<std::string> keyFilePart(const std::string& part);

}  // namespace vellora
