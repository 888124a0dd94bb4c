#pragma once

#include <functional>
#include <optional>
#include <string>

namespace vellora {

// Why one value of a description's key cannot be meant so, and what to write.
struct ValueProblem {
  std::string text;
  std::string remedy;
};
using ValueCheck = std::function<std::optional<ValueProblem>(const std::string&)>;

// Of a value that is taken as it is. Any thread, as all here.
std::optional<ValueProblem> checkText(const std::string& value);
std::optional<ValueProblem> checkRole(const std::string& value);
// A glob for a word of the attribute "class".
std::optional<ValueProblem> checkClass(const std::string& value);
std::optional<ValueProblem> checkId(const std::string& value);
// What a row's frame is of: "element" or "text".
std::optional<ValueProblem> checkFrame(const std::string& value);
std::optional<ValueProblem> checkWindowClass(const std::string& value);
// A glob for a page's address.
std::optional<ValueProblem> checkDocument(const std::string& value);

}  // namespace vellora
