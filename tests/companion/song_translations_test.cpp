#include "companion/translator/song_translations.h"

#include <chrono>
#include <fstream>
#include <functional>
#include <thread>

#include <gmock/gmock.h>
#include <signal.h>

#include "base/files.h"
#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

Song songOf(const std::vector<std::string>& lines) {
  Song song;
  for (const std::string& line : lines) song.lines.push_back({{}, line, {}, 1, {}});
  return song;
}

std::vector<std::string> translationsOf(const Song& song) {
  std::vector<std::string> result;
  for (const SongLine& line : song.lines) result.push_back(line.translation);
  return result;
}

bool waitFor(const std::function<bool()>& condition) {
  for (int i = 0; i < 6000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

bool isGone(pid_t id) { return ::kill(id, 0) != 0; }

// Programs of the test's own, as a shell's words.
class Translations : public SongFolder {
 protected:
  SongTranslations with(const std::string& script, double patience = 60,
                        const std::string& to = "de") {
    return SongTranslations({{"sh", "-c", script}, {script, {}, to}, patience},
                            TranslationCache(folder / "cache"));
  }
  // Steps until the program has come to its end or the notice says why not.
  static void finish(SongTranslations& translations, Song& song, const std::string& last) {
    waitFor([&] {
      translations.step(0, song);
      return !translations.notice().empty() || song.lines.back().translation == last;
    });
  }
  pid_t writtenId(const char* name) const {
    pid_t id = 0;
    waitFor([&] { return static_cast<bool>(std::ifstream(folder / name) >> id); });
    return id;
  }
};

TEST(CommandWords, AreTakenApartAtBlanksButWithinQuotes) {
  EXPECT_THAT(commandWords("a  'b c' \"d e\" --f=g", "/home/x"),
              ElementsAre("a", "b c", "d e", "--f=g"));
  EXPECT_THAT(commandWords("~/bin/t ~/x; $(y) | z", "/home/x"),
              ElementsAre("/home/x/bin/t", "~/x;", "$(y)", "|", "z"));
  EXPECT_THAT(commandWords("  ", ""), ElementsAre());
}

TEST_F(Translations, FillTheLinesThatTheFilesLeaveOpen) {
  SongTranslations translations = with("sed 's/^/t:/'");
  Song song = songOf({"a", "b", "♪", "a"});
  song.lines[1].translation = "mine";
  translations.begin(song);
  finish(translations, song, "t:a");
  EXPECT_THAT(translationsOf(song), ElementsAre("t:a", "mine", "", "t:a"));
  EXPECT_TRUE(song.lines[0].byProgram);
  EXPECT_FALSE(song.lines[1].byProgram);
  EXPECT_EQ(song.translated(), 1U);
  EXPECT_EQ(translations.notice(), "");
}

TEST_F(Translations, GiveTheProgramEachTextOnceAndTheLanguages) {
  SongTranslations translations({{"sh", "-c",
                                  "cat > \"$0\"; echo \"$VELLORA_SOURCE_LANGUAGE "
                                  "$VELLORA_TARGET_LANGUAGE $1\"; echo x",
                                  (folder / "got").string(), "{from}-{to}"},
                                 {"command", {}, "de"},
                                 60},
                                TranslationCache({}));
  Song song = songOf({"さくら", "空", "さくら"});
  translations.begin(song);
  finish(translations, song, "ja de ja-de");
  EXPECT_THAT(translationsOf(song), ElementsAre("ja de ja-de", "x", "ja de ja-de"));
  EXPECT_EQ(readWholeFile(folder / "got"), "さくら\n空\n");
}

TEST_F(Translations, AppearAsTheyCome) {
  SongTranslations translations = with("echo one; exec sleep 1000");
  Song song = songOf({"a", "b"});
  translations.begin(song);
  EXPECT_TRUE(waitFor([&] { return translations.step(0, song); }));
  EXPECT_THAT(translationsOf(song), ElementsAre("one", ""));
}

TEST_F(Translations, TooFewLinesAreTakenBack) {
  SongTranslations translations = with("head -n 1");
  Song song = songOf({"a", "b"});
  translations.begin(song);
  finish(translations, song, "never");
  EXPECT_THAT(translationsOf(song), ElementsAre("", ""));
  EXPECT_FALSE(song.lines[0].byProgram);
  EXPECT_EQ(translations.notice(),
            "the translator's lines are not used: it gave only 1 for 2 lines");
}

TEST_F(Translations, TooManyLinesAreTakenBack) {
  for (const char* script : {"cat; echo more", "yes", "cat; exec yes"}) {
    SongTranslations translations = with(script);
    Song song = songOf({"a", "b"});
    song.lines[1].translation = "mine";
    translations.begin(song);
    finish(translations, song, "never");
    EXPECT_THAT(translationsOf(song), ElementsAre("", "mine")) << script;
    EXPECT_THAT(translations.notice(), HasSubstr("gave more for 1 line")) << script;
  }
}

TEST_F(Translations, BlankLinesAfterTheLastAreNone) {
  SongTranslations translations = with("printf 'x\\r\\ny\\n\\n \\n'");
  Song song = songOf({"a", "b"});
  translations.begin(song);
  finish(translations, song, "y");
  EXPECT_THAT(translationsOf(song), ElementsAre("x", "y"));
}

TEST_F(Translations, WhatCameBeforeAFailureStays) {
  SongTranslations translations = with("echo x; echo 'no such language' >&2; exit 3");
  Song song = songOf({"a", "b"});
  translations.begin(song);
  finish(translations, song, "never");
  EXPECT_THAT(translationsOf(song), ElementsAre("x", ""));
  EXPECT_EQ(translations.notice(),
            "the translator failed (exit status 3: no such language) after 1 line of 2");
}

TEST_F(Translations, TheEndByASignalIsTold) {
  SongTranslations translations = with("kill -SEGV $$");
  Song song = songOf({"a"});
  translations.begin(song);
  finish(translations, song, "never");
  EXPECT_THAT(translations.notice(), HasSubstr("(signal 11"));
}

TEST_F(Translations, OneThatHangsIsEndedAndTold) {
  const std::string id = (folder / "id").string();
  SongTranslations translations = with("trap '' TERM; echo x; echo $$ > " + id + "; sleep 1000", 5);
  Song song = songOf({"a", "b"});
  translations.begin(song);
  ASSERT_TRUE(waitFor([&] { return translations.step(100, song); }));
  const pid_t process = writtenId("id");
  translations.step(104.9, song);
  EXPECT_EQ(translations.notice(), "");
  translations.step(105, song);
  EXPECT_THAT(translations.notice(), StartsWith("the translator was ended: it had 1 line of 2"));
  EXPECT_THAT(translationsOf(song), ElementsAre("x", ""));
  EXPECT_TRUE(waitFor([&] { return isGone(process); }));
}

TEST_F(Translations, ANewSongEndsTheProgramAndWhatItStarted) {
  SongTranslations translations =
      with("trap '' TERM; sleep 1000 & echo $! > " + (folder / "child").string() + "; echo $$ > " +
           (folder / "id").string() + "; wait");
  Song song = songOf({"a"});
  translations.begin(song);
  const pid_t process = writtenId("id");
  const pid_t child = writtenId("child");
  translations.drop();
  EXPECT_TRUE(waitFor([&] { return isGone(process); }));
  EXPECT_TRUE(waitFor([&] { return isGone(child); }));
}

TEST_F(Translations, OneThatHasLeftItsGroupEndsWithItsNextLine) {
  SongTranslations translations = with("setsid sh -c 'echo $$ > " + (folder / "id").string() +
                                       "; while sleep 0.05; do echo x || exit; done' & wait");
  Song song = songOf({"a"});
  translations.begin(song);
  const pid_t process = writtenId("id");
  EXPECT_FALSE(isGone(process));
  translations.drop();
  EXPECT_TRUE(waitFor([&] { return isGone(process); }));
}

TEST_F(Translations, OneThatReadsNothingIsNotWaitedFor) {
  SongTranslations translations = with("exec <&-; echo x");
  Song song = songOf(std::vector<std::string>(1, "a"));
  for (int i = 0; i < 20000; ++i) song.lines.push_back({{}, "a" + std::to_string(i), {}, 1, {}});
  translations.begin(song);
  finish(translations, song, "never");
  EXPECT_THAT(translations.notice(), HasSubstr("gave only 1 for 20001 lines"));
}

TEST_F(Translations, ALineWithoutAnEndIsCutOff) {
  SongTranslations translations = with("exec tr '\\0' x < /dev/zero");
  Song song = songOf({"a"});
  translations.begin(song);
  finish(translations, song, "never");
  EXPECT_THAT(translations.notice(), HasSubstr("gave more"));
  EXPECT_THAT(translationsOf(song), ElementsAre(""));
}

TEST_F(Translations, AFloodOfErrorsHoldsNothingUp) {
  SongTranslations translations =
      with("head -c 1000000 /dev/zero | tr '\\0' e >&2; echo >&2; echo why >&2; exit 1");
  Song song = songOf({"a"});
  translations.begin(song);
  finish(translations, song, "never");
  EXPECT_THAT(translations.notice(), HasSubstr("(exit status 1: why)"));
}

TEST_F(Translations, GarbageIsCleaned) {
  SongTranslations translations = with("printf 'x\\033[2J\\377\\001y'");
  Song song = songOf({"a"});
  translations.begin(song);
  finish(translations, song, "x [2J\uFFFD y");
  EXPECT_THAT(translationsOf(song), ElementsAre("x [2J\uFFFD y"));
}

TEST_F(Translations, OneThatIsMissingIsTold) {
  SongTranslations translations({{"no-such-program"}, {"x", {}, "de"}, 60}, TranslationCache({}));
  Song song = songOf({"a"});
  translations.begin(song);
  EXPECT_THAT(translations.notice(), HasSubstr("is no-such-program installed?"));
}

TEST_F(Translations, WhyOneCannotBeStartedIsTold) {
  put("script", "#!/bin/sh\ncat\n");
  for (const std::string& word : {(folder / "script").string(), folder.string()}) {
    SongTranslations translations({{word}, {"x", {}, "de"}, 60}, TranslationCache({}));
    Song song = songOf({"a"});
    translations.begin(song);
    EXPECT_EQ(translations.notice(),
              "the translator cannot be started: " + word + ": Permission denied");
  }
}

TEST_F(Translations, AreNotMadeTwice) {
  const std::string script = "echo run >> " + (folder / "runs").string() + "; sed 's/^/t:/'";
  for (int i = 0; i < 2; ++i) {
    SongTranslations translations = with(script);
    Song song = songOf({"a", "b"});
    translations.begin(song);
    finish(translations, song, "t:b");
    // The program is seen to end, and what it made is kept.
    ASSERT_TRUE(waitFor([&] {
      translations.step(0, song);
      return std::filesystem::exists(folder / "cache");
    }));
    EXPECT_THAT(translationsOf(song), ElementsAre("t:a", "t:b"));
    EXPECT_TRUE(song.lines[0].byProgram);
  }
  EXPECT_EQ(readWholeFile(folder / "runs"), "run\n");
}

class Cached : public SongFolder {
 protected:
  const TranslationManner manner{"command", "en", "de"};
  const std::vector<std::string> lines{"a", "b"};
  const std::vector<std::string> translations{"x", ""};
};

TEST_F(Cached, OnlyTheSameTextCommandAndLanguagesAreFound) {
  const TranslationCache cache(folder / "cache");
  EXPECT_EQ(cache.find(manner, lines), std::nullopt);
  cache.keep(manner, lines, translations);
  EXPECT_EQ(cache.find(manner, lines), translations);
  EXPECT_EQ(cache.find({"command", "en", "fr"}, lines), std::nullopt);
  EXPECT_EQ(cache.find({"command", "", "de"}, lines), std::nullopt);
  EXPECT_EQ(cache.find({"other", "en", "de"}, lines), std::nullopt);
  EXPECT_EQ(cache.find(manner, {"a", "c"}), std::nullopt);
  EXPECT_EQ(cache.find(manner, {"a"}), std::nullopt);
}

TEST_F(Cached, ADamagedFileIsNone) {
  const TranslationCache cache(folder / "cache");
  cache.keep(manner, lines, translations);
  const auto path = std::filesystem::directory_iterator(folder / "cache")->path();
  const std::string whole = readWholeFile(path).value_or("");
  ASSERT_FALSE(whole.empty());
  for (std::size_t size = 0; size < whole.size(); ++size) {
    std::ofstream(path) << whole.substr(0, size);
    EXPECT_EQ(cache.find(manner, lines), std::nullopt) << size;
  }
  std::ofstream(path) << whole << "more";
  EXPECT_EQ(cache.find(manner, lines), std::nullopt);
  cache.keep(manner, lines, translations);
  EXPECT_EQ(cache.find(manner, lines), translations);
}

TEST_F(Cached, TheOldestGoWhereThereAreTooMany) {
  const TranslationCache cache(folder / "cache", {3, 1'000'000});
  using Files = std::filesystem::directory_iterator;
  for (const char* line : {"1", "2", "3", "4", "5"}) {
    cache.keep(manner, {line}, {"x"});
    for (const auto& file : Files(folder / "cache")) {
      last_write_time(file, file.last_write_time() - std::chrono::hours(1));
    }
  }
  EXPECT_EQ(std::distance(Files(folder / "cache"), Files()), 3);
  EXPECT_TRUE(cache.find(manner, {"5"}));
  EXPECT_FALSE(cache.find(manner, {"1"}));
}

TEST_F(Cached, TheyAreBoundedInBytesToo) {
  const TranslationCache cache(folder / "cache", {1000, 10'000});
  for (const char* line : {"1", "2", "3", "4", "5"}) {
    cache.keep(manner, {line}, {std::string(3000, 'x')});
  }
  using Files = std::filesystem::directory_iterator;
  EXPECT_EQ(std::distance(Files(folder / "cache"), Files()), 3);
}

TEST_F(Cached, FilesOfOthersStay) {
  put("cache/mine.tsv", "x");
  const TranslationCache cache(folder / "cache", {1, 1'000'000});
  for (const char* line : {"1", "2"}) cache.keep(manner, {line}, {"x"});
  EXPECT_TRUE(std::filesystem::exists(folder / "cache/mine.tsv"));
}

TEST_F(Cached, AFolderThatCannotBeMadeKeepsNothing) {
  put("file", "");
  const TranslationCache cache(folder / "file");
  cache.keep(manner, lines, translations);
  EXPECT_EQ(cache.find(manner, lines), std::nullopt);
}

// Sixty lines, as a song has, by a real program.
TEST_F(Translations, ApertiumTranslatesASong) {
  Song song;
  for (int i = 0; i < 58; ++i) {
    song.lines.push_back({{}, "I see the house number " + std::to_string(i), {}, i + 1, {}});
  }
  // Lines without a full stop, from whose sentence no word goes over to the next one.
  song.lines.push_back({{}, "and the tide wrote its name on the stones in foam", {}, 59, {}});
  song.lines.push_back({{}, "Lanterns, lanterns over the bay", {}, 60, {}});
  const std::string command = std::string(VELLORA_TRANSLATE_BY_APERTIUM) + " eng-spa";
  SongTranslations translations({commandWords(command, ""), {command, {}, "es"}, 60},
                                TranslationCache({}));
  const auto began = std::chrono::steady_clock::now();
  translations.begin(song);
  ASSERT_TRUE(waitFor([&] {
    translations.step(0, song);
    return !song.lines.back().translation.empty() || !translations.notice().empty();
  }));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
  EXPECT_EQ(translations.notice(), "");
  EXPECT_EQ(song.lines.front().translation, "Veo el número de casa 0");
  EXPECT_EQ(song.lines.back().translation, "Linternas, linternas sobre la bahía");
  RecordProperty("seconds", std::to_string(took.count()));
}

}  // namespace
}  // namespace vellora::companion
