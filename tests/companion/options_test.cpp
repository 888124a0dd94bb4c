#include "companion/program/options.h"

#include <map>

#include <gtest/gtest.h>

#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

Environment environmentOf(std::map<std::string, std::string> variables) {
  return [variables = std::move(variables)](const char* name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  };
}

const Environment plain = environmentOf({{"XDG_RUNTIME_DIR", "/run/user/7"}, {"HOME", "/nowhere"}});

Options parsed(const std::vector<std::string>& words, const Environment& environment = plain) {
  auto result = parseOptions(words, environment);
  if (const auto* answer = std::get_if<Answer>(&result)) ADD_FAILURE() << answer->text;
  return std::holds_alternative<Options>(result) ? std::get<Options>(result) : Options();
}

TEST(CompanionOptions, AFolderIsKept) {
  const Options options = parsed({"songs", "--font-size", "30", "--offset", "-12", "--plain"});
  EXPECT_EQ(options.task, Task::keep);
  EXPECT_EQ(options.folder, "songs");
  EXPECT_EQ(options.exchange, "/run/user/7/Vellora");
  EXPECT_EQ(options.captions.fontSize, 30);
  EXPECT_EQ(options.captions.verticalOffset, -12);
  EXPECT_TRUE(options.plain);
  EXPECT_FALSE(options.overlay);
}

TEST(CompanionOptions, NamingTheOverlaysProgramStartsIt) {
  EXPECT_TRUE(parsed({"songs", "--overlay-program", "/x/vellora"}).overlay);
}

TEST(CompanionOptions, CommandsCarryTheirWords) {
  const Options play = parsed({"play", "Night Drive", "River Band", "--at", "1:05"});
  EXPECT_EQ(play.task, Task::command);
  EXPECT_EQ(play.command.action, MusicCommand::Action::play);
  EXPECT_EQ(play.command.title, "Night Drive");
  EXPECT_EQ(play.command.artist, "River Band");
  EXPECT_EQ(play.target.seconds, 65);
  EXPECT_EQ(parsed({"seek", "1:23"}).target.seconds, 83);
  EXPECT_EQ(parsed({"seek", "-10"}).target.seconds, -10);
  EXPECT_TRUE(parsed({"seek", "-10"}).target.relative);
  EXPECT_TRUE(parsed({"seek", "+0:10"}).target.relative);
  EXPECT_EQ(parsed({"next", "--patience", "2"}).patience, 2);
  EXPECT_EQ(parsed({"previous"}).command.action, MusicCommand::Action::previous);
  EXPECT_EQ(parsed({"playpause"}).command.action, MusicCommand::Action::playPause);
  EXPECT_EQ(parsed({"status"}).task, Task::status);
  EXPECT_EQ(parsed({"next", "--exchange", "/a/Vellora"}).exchange, "/a/Vellora");
}

TEST(CompanionOptions, FoldersAreCheckedAndImportedWithoutAnExchangeFolder) {
  const Environment nothing = environmentOf({});
  EXPECT_EQ(parsed({"check", "songs"}, nothing).folder, "songs");
  const Options import = parsed({"import", "songs", "--to", "library", "--force"}, nothing);
  EXPECT_EQ(import.task, Task::import);
  EXPECT_EQ(import.importTo, "library");
  EXPECT_TRUE(import.force);
}

TEST(CompanionOptions, TheExchangeFolderIsNamedVellora) {
  EXPECT_EQ(parsed({"songs", "--exchange", "/a/Vellora/"}).exchange, "/a/Vellora");
  EXPECT_EQ(parsed({"songs", "--exchange", "/a/b/../Vellora"}).exchange, "/a/Vellora");
  EXPECT_TRUE(parsed({"songs", "--exchange", "Vellora"}).exchange.is_absolute());
}

TEST(CompanionOptions, WithoutARuntimeFolderTheStateFolderIsTaken) {
  EXPECT_EQ(defaultExchangeFolder(environmentOf({{"HOME", "/nowhere"}})),
            "/nowhere/.local/state/Vellora");
  EXPECT_EQ(defaultExchangeFolder(environmentOf({{"HOME", "/nowhere"}, {"XDG_STATE_HOME", "/s"}})),
            "/s/Vellora");
  EXPECT_EQ(defaultExchangeFolder(environmentOf({})), std::nullopt);
}

TEST(CompanionOptions, TheSystemsLanguageIsPreferredUnlessOneIsNamed) {
  const auto language = [](const char* variable, const char* value) {
    return parsed({"songs"}, environmentOf({{"XDG_RUNTIME_DIR", "/r"}, {variable, value}}))
        .language;
  };
  EXPECT_EQ(language("LANG", "de_DE.UTF-8"), "de-DE");
  EXPECT_EQ(language("LC_ALL", "fr"), "fr");
  EXPECT_EQ(language("LANG", "C.UTF-8"), "");
  EXPECT_EQ(language("LANG", "POSIX"), "");
  EXPECT_EQ(parsed({"songs", "--language", "pt-BR"}).language, "pt-BR");
}

struct WrongCase {
  std::vector<std::string> words;
  const char* part;
};

TEST(CompanionOptions, MistakesAreToldWithStatusTwo) {
  const WrongCase cases[] = {{{}, "name the folder of lyrics, or a command"},
                             {{"check"}, "name the folder of lyrics"},
                             {{"songs", "--plain=perhaps"}, "neither yes nor no"},
                             {{"songs", "--exchange", "/a/b"}, "must be \"Vellora\""},
                             {{"songs", "--font-size", "7"}, "--font-size"},
                             {{"songs", "--font-size", "nan"}, "--font-size"},
                             {{"songs", "--offset", "401"}, "--offset"},
                             {{"songs", "--language", "german please"}, "is no language tag"},
                             {{"songs", "--wrong"}, "--wrong"},
                             {{"songs", "--lyrics", "perhaps"}, "is not none or lrclib"},
                             {{"songs", "--lyrics-server", "lrclib"}, "is no address such as"},
                             {{"seek"}, "TIME"},
                             {{"seek", "soon"}, "\"soon\" is no time such as 1:23"},
                             {{"play"}, "TITLE"},
                             {{"play", "x", "--at", "+5"}, "\"+5\" is no time"},
                             {{"next", "--patience", "-1"}, "--patience"},
                             {{"import", "songs"}, "--to"},
                             {{"next", "status"}, "\"status\" is one word too many"},
                             {{"check", "a", "b"}, "\"b\" is one word too many"},
                             {{"chek", "songs"}, "\"chek\" was taken as the folder of lyrics"},
                             {{"songs", "next"}, "\"songs\" is one word too many"}};
  for (const WrongCase& each : cases) {
    const auto result = parseOptions(each.words, plain);
    const auto* answer = std::get_if<Answer>(&result);
    ASSERT_NE(answer, nullptr) << testing::PrintToString(each.words);
    EXPECT_EQ(answer->status, wrongArguments);
    EXPECT_EQ(answer->text.find("vellora-companion: "), 0U);
    EXPECT_NE(answer->text.find(each.part), std::string::npos) << answer->text;
  }
}

// A home folder with a settings' file, for as long as it lives.
class ConfiguredHome : public SongFolder {
 protected:
  Environment with(const std::string& text) const {
    put("home/vellora/companion.conf", text);
    return environmentOf(
        {{"XDG_RUNTIME_DIR", "/r"}, {"XDG_CONFIG_HOME", (folder / "home").string()}});
  }
};
using CompanionConfig = ConfiguredHome;

TEST_F(CompanionConfig, TheFileAloneStartsTheProgram) {
  const Options options =
      parsed({}, with("folder = /songs\nfont-size = 30\noverlay = yes\nexchange = /x/Vellora/\n"));
  EXPECT_EQ(options.task, Task::keep);
  EXPECT_EQ(options.folder, "/songs");
  EXPECT_EQ(options.captions.fontSize, 30);
  EXPECT_TRUE(options.overlay);
  EXPECT_EQ(options.exchange, "/x/Vellora");
  EXPECT_EQ(parsed({"next"}, with("patience = 3")).patience, 3);
  EXPECT_EQ(parsed({"check"}, with("folder = /songs")).folder, "/songs");
  EXPECT_EQ(parsed({"check", "/other"}, with("folder = /songs")).folder, "/other");
}

TEST_F(CompanionConfig, TheCommandLineComesBeforeTheFile) {
  const Environment environment =
      with("folder = /songs\nfont-size = 30\nplain = yes\noverlay = yes\nlanguage = de\n");
  const Options options = parsed({"/other", "--font-size", "31", "--plain=no"}, environment);
  EXPECT_EQ(options.folder, "/other");
  EXPECT_EQ(options.captions.fontSize, 31);
  EXPECT_FALSE(options.plain);
  EXPECT_TRUE(options.overlay);
  EXPECT_EQ(options.language, "de");
  using Kind = SettingOrigin::Kind;
  std::map<std::string, SettingOrigin> origins;
  for (std::size_t i = 0; i < allSettings().size(); ++i) {
    origins[allSettings()[i].key] = options.origins.at(i);
  }
  EXPECT_EQ(origins["folder"].kind, Kind::commandLine);
  EXPECT_EQ(origins["language"].kind, Kind::file);
  EXPECT_EQ(origins["language"].line, 5);
  EXPECT_EQ(origins["offset"].kind, Kind::fallback);
}

TEST_F(CompanionConfig, WhatIsSaidMorePlainlyDecidesWhetherTheOverlayStarts) {
  const auto starts = [this](const char* text, std::vector<std::string> words) {
    words.emplace_back("/songs");
    return parsed(words, with(text)).overlay;
  };
  EXPECT_TRUE(starts("overlay-program = /x\n", {}));
  EXPECT_FALSE(starts("overlay-program = /x\noverlay = no\n", {}));
  EXPECT_FALSE(starts("overlay-program = /x\n", {"--overlay=no"}));
  EXPECT_TRUE(starts("overlay = no\n", {"--overlay-program", "/x"}));
}

TEST_F(CompanionConfig, AMistakeInTheFileIsOneOfTheArguments) {
  const auto result = parseOptions({"/songs"}, with("plain = yes\nfont-sise = 3\noffset = x\n"));
  const auto* answer = std::get_if<Answer>(&result);
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer->status, wrongArguments);
  const std::string file = (folder / "home/vellora/companion.conf").string();
  EXPECT_NE(answer->text.find(file + ":2: error: no setting is called \"font-sise\""),
            std::string::npos)
      << answer->text;
  EXPECT_NE(answer->text.find(file + ":3: error: offset"), std::string::npos) << answer->text;
}

TEST_F(CompanionConfig, AFileThatCannotBeReadIsToldAndNoneIsFine) {
  std::filesystem::create_directories(folder / "home/vellora/companion.conf");
  const Environment environment =
      environmentOf({{"XDG_RUNTIME_DIR", "/r"}, {"XDG_CONFIG_HOME", (folder / "home").string()}});
  const auto result = parseOptions({"/songs"}, environment);
  const auto* answer = std::get_if<Answer>(&result);
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer->status, filesFailed);
  std::filesystem::remove(folder / "home/vellora/companion.conf");
  EXPECT_EQ(parsed({"/songs"}, environment).folder, "/songs");
}

TEST(CompanionOptions, NobodyIsAskedForLyricsUnlessTheUserSaysSo) {
  const auto lyrics = [](std::vector<std::string> words) {
    words.insert(words.begin(), "songs");
    return parsed(words).lyrics;
  };
  EXPECT_EQ(lyrics({}), "none");
  EXPECT_EQ(lyrics({"--online"}), "lrclib");
  EXPECT_EQ(lyrics({"--lyrics", "lrclib"}), "lrclib");
  EXPECT_EQ(lyrics({"--lyrics", "none"}), "none");
  EXPECT_EQ(lyrics({"--lyrics-server", "http://localhost:3300"}), "none");
}

TEST(CompanionOptions, HelpIsNoMistake) {
  for (const auto& words : {std::vector<std::string>{"--help"}, {"-h"}, {"seek", "--help"}}) {
    const auto result = parseOptions(words, plain);
    const auto* answer = std::get_if<Answer>(&result);
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer->status, 0);
    EXPECT_NE(answer->text.find("Usage: vellora-companion"), std::string::npos);
    EXPECT_NE(answer->text.find("Exit status:"), std::string::npos);
    EXPECT_EQ(answer->text.find("TEXT"), std::string::npos) << answer->text;
  }
}

}  // namespace
}  // namespace vellora::companion
