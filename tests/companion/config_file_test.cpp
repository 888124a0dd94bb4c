#include "companion/settings/config_file.h"

#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "companion/song/text.h"

namespace vellora::companion {
namespace {

// The file's text taken in, with what is wrong with it.
struct Taken {
  Settings settings;
  std::vector<int> lines;
  std::string problems;

  explicit Taken(std::string_view text) {
    Problems found("c.conf");
    const auto entries = readConfigText(text, found);
    lines = takeConfig(entries, "/home/ann", settings, found);
    for (const Problem& problem : std::move(found).take()) problems += problem.text() + "\n";
  }
};

TEST(ConfigFile, KeysAndValuesStandInALineEach) {
  const Taken taken(
      "\xEF\xBB\xBF# mine\n\n folder = /music/My Songs # 1 = best \r\n"
      "font-size=31.5\n\toffset\t=\t-12\nplain = Yes\nlanguage = pt-BR\n"
      "overlay-program = /opt/x = y\npatience = 0");
  EXPECT_EQ(taken.problems, "");
  EXPECT_EQ(taken.settings.folder, "/music/My Songs # 1 = best");
  EXPECT_EQ(taken.settings.captions.fontSize, 31.5);
  EXPECT_EQ(taken.settings.captions.verticalOffset, -12);
  EXPECT_TRUE(taken.settings.plain);
  EXPECT_FALSE(taken.settings.overlay);
  EXPECT_EQ(taken.settings.language, "pt-BR");
  EXPECT_EQ(taken.settings.overlayProgram, "/opt/x = y");
  EXPECT_EQ(taken.settings.patience, 0);
  ASSERT_EQ(taken.lines.size(), allSettings().size());
  EXPECT_EQ(taken.lines.front(), 3) << "folder";
  EXPECT_EQ(taken.lines[1], 0) << "exchange";
}

TEST(ConfigFile, PathsMeanTheSameWhereverTheProgramStarts) {
  EXPECT_EQ(Taken("folder = ~/Music").settings.folder, "/home/ann/Music");
  EXPECT_EQ(Taken("folder = ~").settings.folder, "/home/ann");
  EXPECT_EQ(Taken("folder = Music").problems,
            "c.conf:1: error: folder: \"Music\" depends on where one stands; name it from the root "
            "on, or from the home folder as ~/Music\n");
  Settings settings;
  Problems found("c.conf");
  takeConfig({{"folder", "~/Music", 1}}, std::nullopt, settings, found);
  EXPECT_TRUE(anyError(std::move(found).take())) << "without a home folder";
}

struct MistakeCase {
  const char* text;
  const char* told;
};

TEST(ConfigFile, MistakesAreToldWithTheirLineAndARemedy) {
  const MistakeCase cases[] = {
      {"\nfont-sise = 30",
       "c.conf:2: error: no setting is called \"font-sise\"; is \"font-size\" meant?"},
      {"Font_Size = 30",
       "c.conf:1: error: no setting is called \"Font_Size\"; is \"font-size\" meant?"},
      {"volume = 30",
       "c.conf:1: error: no setting is called \"volume\"; vellora-companion(1) lists the keys"},
      {"plain = yes\nplain = no",
       "c.conf:2: error: plain is set a second time, after line 1; take one of the lines out"},
      {"font-size = 7",
       "c.conf:1: error: font-size: \"7\" is no number between 8 and 96; write for "
       "example font-size = 26"},
      {"font-size = nan",
       "c.conf:1: error: font-size: \"nan\" is no number between 8 and 96; write for "
       "example font-size = 26"},
      {"font-size = 30 # large",
       "c.conf:1: error: font-size: \"30 # large\" is no number between 8 and 96; a comment stands "
       "on a line of its own"},
      {"plain = perhaps",
       "c.conf:1: error: plain: \"perhaps\" is neither yes nor no; write for example "
       "plain = no"},
      {"folder =",
       "c.conf:1: error: folder: the value is missing; put a # before the line to have what holds "
       "without it"},
      {"exchange = /tmp/x",
       "c.conf:1: error: exchange: the folder's own name must be \"Vellora\", for the overlay "
       "takes "
       "no other; write for example exchange = ~/Vellora"},
      {"language = german please",
       "c.conf:1: error: language: \"german please\" is no language tag such as de or pt-BR; "
       "write for example language = de"},
      {"plain", "c.conf:1: error: \"plain\" is no setting; write key = value"},
      {"= yes", "c.conf:1: error: \"= yes\" is no setting; write key = value"},
      {"[main]", "c.conf:1: error: the file has no sections; take this line out"}};
  for (const MistakeCase& each : cases) {
    EXPECT_EQ(Taken(each.text).problems, std::string(each.told) + "\n") << each.text;
  }
}

TEST(ConfigFile, AllMistakesAreToldAtOnceAndTheRestIsTaken) {
  const Taken taken("x = 1\nfont-size = 30\ny\n");
  EXPECT_EQ(taken.problems,
            "c.conf:1: error: no setting is called \"x\"; vellora-companion(1) lists the keys\n"
            "c.conf:3: error: \"y\" is no setting; write key = value\n");
  EXPECT_EQ(taken.settings.captions.fontSize, 30);
}

TEST(ConfigFile, TheFileThatIsMadeChangesNothingAndNamesEverySetting) {
  const std::string text = commentedConfig();
  Problems found("c.conf");
  EXPECT_TRUE(readConfigText(text, found).empty());
  EXPECT_TRUE(std::move(found).take().empty());

  // Each line without its "#" is right as it stands.
  std::string used;
  forEachLine(text, [&](int, std::string_view line) {
    if (line.starts_with('#') && !line.starts_with("# ")) {
      used.append(line.substr(1)).append("\n");
    }
    return true;
  });
  const Taken taken(used);
  EXPECT_EQ(taken.problems, "");
  for (std::size_t i = 0; i < allSettings().size(); ++i) {
    EXPECT_GT(taken.lines[i], 0) << allSettings()[i].key;
  }
}

TEST(ConfigFile, LiesInTheUsersFolderOfSettings) {
  const auto at = [](const std::map<std::string, std::string>& variables) {
    return configFilePath([&](const char* name) -> std::optional<std::string> {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
  };
  EXPECT_EQ(at({{"HOME", "/h"}}), "/h/.config/vellora/companion.conf");
  EXPECT_EQ(at({{"HOME", "/h"}, {"XDG_CONFIG_HOME", "/c"}}), "/c/vellora/companion.conf");
  EXPECT_EQ(at({{"HOME", "/h"}, {"XDG_CONFIG_HOME", "c"}}), "/h/.config/vellora/companion.conf");
  EXPECT_EQ(at({}), std::nullopt);
}

TEST(SettingsTable, EverySettingCanBeShownAndHasAKeyOfItsOwn) {
  std::set<std::string> keys;
  for (const Setting& setting : allSettings()) {
    EXPECT_TRUE(keys.insert(setting.key).second) << setting.key;
    EXPECT_FALSE(setting.help.empty()) << setting.key;
    EXPECT_FALSE(shownSetting(setting, Settings()).empty() && setting.example.empty())
        << setting.key << " has neither a default nor an example";
    EXPECT_EQ(setting.valueName.empty(), std::holds_alternative<SwitchValue>(setting.value))
        << setting.key;
  }
}

}  // namespace
}  // namespace vellora::companion
