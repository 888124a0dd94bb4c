#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "companion/settings/settings.h"

namespace vellora::companion {

// What a setting's value may be, and where it goes. `mistake` says what is wrong with a value, or
// nothing.
struct SwitchValue {
  bool& (*place)(Settings&);
};
struct NumberValue {
  double& (*place)(Settings&);
  double lowest;
  double highest;
};
struct TextValue {
  std::string& (*place)(Settings&);
  std::string (*mistake)(const std::string& text) = nullptr;
};
struct ChoiceValue {
  std::string& (*place)(Settings&);
  std::vector<std::string> words;
};
struct PathValue {
  std::filesystem::path& (*place)(Settings&);
  std::string (*mistake)(const std::filesystem::path& path) = nullptr;
};

// Where the command line takes a setting.
enum class SettingScope {
  everywhere,     // as an option
  argument,       // as the word without an option
  playerCommands  // as an option of the commands to the player
};

// An option that stands for another one with a certain value.
struct SettingShorthand {
  std::string option;
  std::string value;
  std::string help;
};

// One setting: a key of the file, and on the command line the option "--key".
struct Setting {
  std::string key;
  std::string valueName = {};  // in the help, as "POINTS"; empty for a switch
  std::string help;
  std::variant<SwitchValue, NumberValue, TextValue, ChoiceValue, PathValue> value;
  std::string otherwise = {};  // what holds without it, where the default is empty; may be empty
  std::string example = {};    // a value to show, where the default is empty
  SettingScope scope = SettingScope::everywhere;
  std::optional<SettingShorthand> shorthand = {};

  // The option, or the name of the argument.
  std::string option() const;
  // The help with the bounds, the words and the default.
  std::string fullHelp() const;
};

// All settings, in the order in which people are shown them. A new one is a row here and a member
// of `Settings`. Any thread.
std::span<const Setting> allSettings();

// Judges a value and puts it in its place. What is wrong with it, or nothing.
std::string takeSetting(const Setting& setting, const std::string& text, Settings& settings);

// The value as the file would have it; empty where there is none.
std::string shownSetting(const Setting& setting, const Settings& settings);

}  // namespace vellora::companion
