#include "companion/settings/setting.h"

#include <algorithm>

#include "base/number_text.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

// "26" for 26.0.
std::string numberText(double number) {
  std::string text = plainNumber(number);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return text;
}

std::string enumeration(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) text += i + 1 == words.size() ? " or " : ", ";
    text += words[i];
  }
  return text;
}

struct Taking {
  const std::string& text;
  Settings& settings;

  std::string operator()(const SwitchValue& value) const {
    const std::string word = lowerCase(text);
    const bool on = word == "yes" || word == "true" || word == "on" || word == "1";
    if (!on && word != "no" && word != "false" && word != "off" && word != "0") {
      return inQuotes(text) + " is neither yes nor no";
    }
    value.place(settings) = on;
    return {};
  }
  std::string operator()(const NumberValue& value) const {
    const auto number = parseNumber(text);
    if (!number || !(*number >= value.lowest && *number <= value.highest)) {
      return inQuotes(text) + " is no number between " + numberText(value.lowest) + " and " +
             numberText(value.highest);
    }
    value.place(settings) = *number;
    return {};
  }
  std::string operator()(const TextValue& value) const {
    std::string mistake = value.mistake ? value.mistake(text) : std::string();
    if (mistake.empty()) value.place(settings) = text;
    return mistake;
  }
  std::string operator()(const ChoiceValue& value) const {
    if (std::ranges::find(value.words, text) == value.words.end()) {
      return inQuotes(text) + " is not " + enumeration(value.words);
    }
    value.place(settings) = text;
    return {};
  }
  std::string operator()(const PathValue& value) const {
    std::string mistake = value.mistake ? value.mistake(text) : std::string();
    if (mistake.empty()) value.place(settings) = text;
    return mistake;
  }
};

struct Showing {
  Settings& settings;

  std::string operator()(const SwitchValue& value) const {
    return value.place(settings) ? "yes" : "no";
  }
  std::string operator()(const NumberValue& value) const {
    return numberText(value.place(settings));
  }
  std::string operator()(const TextValue& value) const { return value.place(settings); }
  std::string operator()(const ChoiceValue& value) const { return value.place(settings); }
  std::string operator()(const PathValue& value) const { return value.place(settings).string(); }
};

}  // namespace

std::string Setting::option() const {
  return scope == SettingScope::argument ? valueName : "--" + key;
}

std::string Setting::fullHelp() const {
  std::string text = help;
  if (const auto* number = std::get_if<NumberValue>(&value)) {
    text += ", " + numberText(number->lowest) + " to " + numberText(number->highest);
  }
  if (const auto* choice = std::get_if<ChoiceValue>(&value)) {
    text += ": " + enumeration(choice->words);
  }
  if (std::holds_alternative<SwitchValue>(value)) return text;
  const std::string usual = shownSetting(*this, Settings());
  if (!usual.empty()) return text + " (default " + usual + ")";
  return otherwise.empty() ? text : text + " (default: " + otherwise + ")";
}

std::string takeSetting(const Setting& setting, const std::string& text, Settings& settings) {
  if (text.empty()) return "the value is missing";
  return std::visit(Taking{text, settings}, setting.value);
}

std::string shownSetting(const Setting& setting, const Settings& settings) {
  Settings copy = settings;  // the places are to be written to
  return std::visit(Showing{copy}, setting.value);
}

}  // namespace vellora::companion
