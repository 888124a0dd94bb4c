#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/players/description_text.h"
#include "platform/linux/players/key_file_text.h"
#include "platform/linux/players/player_descriptions.h"

namespace vellora {
namespace {

using KeyFile = std::unique_ptr<GKeyFile, GRelease<g_key_file_unref>>;

class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}
  std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(engine_);
  }
  bool once(std::size_t in) { return below(in) == 0; }
  template <typename List>
  const auto& oneOf(const List& list) {
    return list[below(list.size())];
  }

 private:
  std::mt19937 engine_;
};

std::string randomText(Dice& dice, const std::vector<std::string>& pieces) {
  std::string text;
  for (std::size_t left = 1 + dice.below(6); left > 0; --left) text += dice.oneOf(pieces);
  return text;
}

std::vector<std::string> randomList(Dice& dice, const std::vector<std::string>& pieces,
                                    bool mayBeEmpty) {
  std::vector<std::string> list;
  for (std::size_t left = dice.below(4) + (mayBeEmpty ? 0 : 1); left > 0; --left) {
    list.push_back("x" + randomText(dice, pieces));
  }
  return list;
}

// Of words, and of texts that need each escape.
const std::vector<std::string> words{"a", "Z", "-", "_", "\\", ";", "é", "文", "=", "[", "]", "#"};
const std::vector<std::string> texts{"a", " ", "\t", "\n", "\r", "\\", ";", "é", "文", "=", "#"};

ElementPattern randomPattern(Dice& dice, bool mayBeEmpty) {
  ElementPattern pattern;
  if (mayBeEmpty && dice.once(2)) return pattern;
  for (std::size_t left = dice.below(4); left > 0; --left) {
    pattern.roles.push_back(static_cast<std::uint32_t>(dice.below(131)));
  }
  auto globs = words;
  globs.insert(globs.end(), {"*", "?"});
  pattern.names = randomList(dice, texts, true);
  pattern.classes = randomList(dice, globs, true);
  pattern.ids = randomList(dice, globs, false);
  return pattern;
}

PlayerDescription randomDescription(Dice& dice) {
  PlayerDescription description;
  description.identifier = "name";
  description.file = "/name.player";
  description.name = "x" + randomText(dice, texts);
  description.windowClasses = randomList(dice, words, false);
  if (dice.once(3)) return description;
  for (const auto& rest : randomList(dice, words, true)) {
    description.documents.push_back("https://host/" + rest);
  }
  LyricsPattern& lyrics = description.lyrics.emplace();
  lyrics.container = randomPattern(dice, true);
  lyrics.view = randomPattern(dice, false);
  lyrics.viewport = randomPattern(dice, true);
  lyrics.row = randomPattern(dice, false);
  lyrics.rowText = randomPattern(dice, true);
  lyrics.isFrameOfText = dice.once(2);
  if (!lyrics.isFrameOfText) lyrics.rowFrame = randomPattern(dice, true);
  lyrics.title = randomPattern(dice, true);
  if (!lyrics.title.isEmpty()) lyrics.artist = randomPattern(dice, true);
  return description;
}

bool equal(const LyricsPattern& one, const LyricsPattern& other) {
  return one.container == other.container && one.view == other.view &&
         one.viewport == other.viewport && one.row == other.row && one.rowText == other.rowText &&
         one.rowFrame == other.rowFrame && one.isFrameOfText == other.isFrameOfText &&
         one.title == other.title && one.artist == other.artist;
}

// What is accepted is what GKeyFile reads in the text, too: nothing is merged, nothing left out.
void expectAsGKeyFileReads(const std::string& text) {
  const KeyFile file(g_key_file_new());
  GErrorSlot error;
  ASSERT_TRUE(
      g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, error.out()))
      << error.get()->message << "\n"
      << text;
  const auto groups =
      readKeyFile(text, [](int, std::string, std::string) { FAIL() << "a problem"; });
  gsize count = 0;
  const std::unique_ptr<gchar*, GRelease<g_strfreev>> names(
      g_key_file_get_groups(file.get(), &count));
  ASSERT_EQ(count, groups.size()) << text;
  for (const KeyFileGroup& group : groups) {
    const std::unique_ptr<gchar*, GRelease<g_strfreev>> keys(
        g_key_file_get_keys(file.get(), group.name.c_str(), &count, nullptr));
    ASSERT_EQ(count, group.entries.size()) << text;
    for (const KeyFileEntry& entry : group.entries) {
      const GCharPtr value(
          g_key_file_get_value(file.get(), group.name.c_str(), entry.key.c_str(), nullptr));
      ASSERT_TRUE(value) << entry.key << "\n" << text;
      EXPECT_EQ(value.get(), entry.value) << text;
      const std::unique_ptr<gchar*, GRelease<g_strfreev>> parts(g_key_file_get_string_list(
          file.get(), group.name.c_str(), entry.key.c_str(), &count, nullptr));
      const auto ours = keyFileParts(entry.value);
      if (group.name == "Player") {  // its Name is no list
        const GCharPtr string(
            g_key_file_get_string(file.get(), group.name.c_str(), entry.key.c_str(), nullptr));
        EXPECT_EQ(keyFileString(entry.value), string.get());
        continue;
      }
      ASSERT_TRUE(parts) << text;
      ASSERT_EQ(count, ours.size()) << text;
      for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(keyFilePart(ours[i]), parts.get()[i]);
    }
  }
}

TEST(DescriptionFuzzTest, AWrittenDescriptionReadsBackEqual) {
  for (unsigned seed = 0; seed < 2000; ++seed) {
    Dice dice(seed);
    const PlayerDescription description = randomDescription(dice);
    const std::string text = written(description);
    const ReadDescription read = readDescription(text, description.file);
    ASSERT_TRUE(read.description) << text << "\n"
                                  << read.problems[0].line << ": " << read.problems[0].text;
    EXPECT_EQ(read.description->identifier, description.identifier);
    EXPECT_EQ(read.description->name, description.name) << text;
    EXPECT_EQ(read.description->windowClasses, description.windowClasses) << text;
    EXPECT_EQ(read.description->documents, description.documents) << text;
    ASSERT_EQ(read.description->lyrics.has_value(), description.lyrics.has_value()) << text;
    if (description.lyrics) {
      EXPECT_TRUE(equal(*read.description->lyrics, *description.lyrics)) << text;
    }
    expectAsGKeyFileReads(text);
  }
}

// Told or read, and what is told can be printed.
void expectSound(const std::string& text, int& accepted) {
  const ReadDescription read = readDescription(text, "/name.player");
  ASSERT_EQ(read.description == nullptr, !read.problems.empty()) << text;
  const auto lines = static_cast<int>(std::ranges::count(text, '\n')) + 1;
  for (const auto& problem : read.problems) {
    EXPECT_TRUE(problem.line >= 0 && problem.line <= lines) << problem.line << "\n" << text;
    EXPECT_FALSE(problem.text.empty() || problem.remedy.empty()) << text;
    EXPECT_TRUE(isWellFormed(problem.text + problem.remedy)) << text;
    EXPECT_LT(problem.text.size() + problem.remedy.size(), 1000U) << text;
  }
  if (!read.description) return;
  ++accepted;
  expectAsGKeyFileReads(text);
}

TEST(DescriptionFuzzTest, MutationsOfDescriptionsAreReadOrTold) {
  const std::vector<std::string> pieces{"\n",
                                        "\r\n",
                                        ";",
                                        "=",
                                        "[",
                                        "]",
                                        "[Row]",
                                        "\\",
                                        "\\s",
                                        " ",
                                        "\t",
                                        "#",
                                        "*",
                                        "\xff",
                                        "\xc3",
                                        "é",
                                        "Role",
                                        "Name",
                                        "Class=\n",
                                        "x",
                                        "link",
                                        "Id=a",
                                        "\n[Title]\nId=b",
                                        "[Player]",
                                        "\x1b",
                                        "\x7f",
                                        ".",
                                        "://",
                                        "?"};
  int accepted = 0;
  for (unsigned seed = 0; seed < 6000; ++seed) {
    Dice dice(seed);
    std::string text = written(randomDescription(dice));
    for (std::size_t left = 1 + dice.below(4); left > 0; --left) {
      const std::size_t place = dice.below(text.size() + 1);
      if (dice.once(3)) text.erase(place, dice.below(20));
      if (dice.once(3)) text.insert(place, 1, static_cast<char>(dice.below(256)));
      if (dice.once(2)) text.insert(place, dice.oneOf(pieces));
      if (dice.once(8)) text.insert(place, text.substr(dice.below(text.size() + 1), 60));
    }
    ASSERT_NO_FATAL_FAILURE(expectSound(text, accepted)) << seed;
  }
  EXPECT_GT(accepted, 300);  // so that both ways are looked at
  EXPECT_LT(accepted, 5700);
}

TEST(DescriptionFuzzTest, AnyBytesAreReadOrTold) {
  int accepted = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    Dice dice(seed);
    std::string text;
    for (std::size_t left = dice.below(300); left > 0; --left) {
      text +=
          static_cast<char>(dice.once(4) ? dice.oneOf(std::string("[]=\n;\\#")) : dice.below(256));
    }
    ASSERT_NO_FATAL_FAILURE(expectSound(text, accepted)) << seed;
  }
}

}  // namespace
}  // namespace vellora
