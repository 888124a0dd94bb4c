#include "platform/linux/players/pattern_values.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "platform/linux/glib/quoted_text.h"
#include "platform/linux/players/browser_windows.h"
#include "platform/linux/players/role_names.h"

namespace vellora {

namespace {

constexpr std::string_view blanks = " \t\n\r\f";

ValueProblem problem(const std::string& value, const std::string& text, std::string remedy) {
  return {inQuotes(value) + " " + text, std::move(remedy)};
}

bool hasBlank(const std::string& value) { return value.find_first_of(blanks) != std::string::npos; }

std::optional<ValueProblem> checkWord(const std::string& value, char selector, const char* what) {
  if (value.find_first_not_of('*') == std::string::npos) {
    return problem(value, "fits every element", "leave the key out, or write more than *");
  }
  if (value.front() == selector) {
    return problem(value, "begins as a selector of CSS does",
                   "write " + inQuotes(value.substr(1)) + " alone");
  }
  if (hasBlank(value)) {
    return problem(value, std::string("fits no ") + what + ": none has a blank",
                   "write ; between several");
  }
  return std::nullopt;
}

}  // namespace

std::optional<ValueProblem> checkText(const std::string& value) {
  if (value.find_first_not_of(blanks) != std::string::npos) return std::nullopt;
  return ValueProblem{"a text of blanks alone", "write what the text is"};
}

std::optional<ValueProblem> checkRole(const std::string& value) {
  if (roleNumber(value)) return std::nullopt;
  const std::string_view likely = likelyRoleName(value);
  return problem(value, "is no role of AT-SPI",
                 likely.empty() ? "vellora-player(5) lists them"
                                : "what is meant may be \"" + std::string(likely) + "\"");
}

std::optional<ValueProblem> checkClass(const std::string& value) {
  return checkWord(value, '.', "class");
}

std::optional<ValueProblem> checkId(const std::string& value) {
  return checkWord(value, '#', "id");
}

std::optional<ValueProblem> checkFrame(const std::string& value) {
  if (value == "element" || value == "text") return std::nullopt;
  return problem(value, "is no frame of a row",
                 "write text for the box of its characters, or element");
}

std::optional<ValueProblem> checkWindowClass(const std::string& value) {
  if (value.starts_with('@') && value != browsersWord) {
    return problem(value, "stands for no windows", "write @browsers, or the windows' own class");
  }
  if (value.find_first_of("*?") == std::string::npos) return checkText(value);
  return problem(value, "has a wildcard, and a window's class is compared as it is",
                 "list the classes with ; between them");
}

std::optional<ValueProblem> checkDocument(const std::string& value) {
  if (hasBlank(value)) {
    return problem(value, "fits no address: none has a blank", "write %20, or ; between several");
  }
  const std::size_t scheme = value.find(':');
  const std::size_t wildcard = value.find_first_of("*?");
  if (scheme == std::string::npos && wildcard != 0) {
    return problem(value, "fits no address: it has no scheme",
                   "write " + inQuotes("https://" + value));
  }
  const std::size_t host = value.find("://");
  const bool isHostAlone = host != std::string::npos && wildcard == std::string::npos &&
                           value.find('/', host + 3) == std::string::npos;
  if (isHostAlone) {
    return problem(value, "fits no address: a path follows the host",
                   "write " + inQuotes(value + "/*"));
  }
  return std::nullopt;
}

}  // namespace vellora
