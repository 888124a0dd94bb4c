#include "companion/readings/reader.h"

#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace vellora::companion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const auto always = [] { return true; };

std::vector<std::string> readAs(ReadingKind kind, const std::vector<std::string>& lines) {
  return Reader(kind).read(lines, always);
}

TEST(Reader, KnowsTheKindsByTheirNames) {
  EXPECT_EQ(readingKindOf("pinyin"), ReadingKind::pinyin);
  EXPECT_EQ(readingKindOf("romaji"), ReadingKind::romaji);
  EXPECT_EQ(readingKindOf("romaja"), ReadingKind::romaja);
  EXPECT_EQ(readingKindOf("latin"), ReadingKind::latin);
  EXPECT_EQ(readingKindOf("auto"), ReadingKind::automatic);
  EXPECT_EQ(readingKindOf("none"), ReadingKind::none);
  EXPECT_EQ(readingKindOf("automatic"), std::nullopt);
  EXPECT_EQ(readingKindOf(""), std::nullopt);
}

TEST(Reader, ALineOfHanAloneIsJapaneseInASongWithKana) {
  EXPECT_THAT(readAs(ReadingKind::automatic, {"東京", "さくら"}), ElementsAre("tōkyō", "sakura"));
  EXPECT_THAT(readAs(ReadingKind::automatic, {"東京", "我愛你"}),
              ElementsAre("dōng jīng", "wǒ ài nǐ"));
}

TEST(Reader, EachLineOfASongInSeveralScriptsIsReadInItsOwn) {
  EXPECT_THAT(readAs(ReadingKind::automatic, {"사랑해", "Привет", "我爱你", "Hello", "…"}),
              ElementsAre("saranghae", "Privet", "wǒ ài nǐ", "", ""));
}

TEST(Reader, AKindReadsItsOwnLinesOnly) {
  const std::vector<std::string> song{"사랑해", "Привет", "愛", "さくら"};
  EXPECT_THAT(readAs(ReadingKind::romaja, song), ElementsAre("saranghae", "", "", ""));
  EXPECT_THAT(readAs(ReadingKind::latin, song), ElementsAre("", "Privet", "", ""));
  EXPECT_THAT(readAs(ReadingKind::pinyin, song), ElementsAre("", "", "ài", ""));
  EXPECT_THAT(readAs(ReadingKind::romaji, song), ElementsAre("", "", "ai", "sakura"));
  EXPECT_THAT(readAs(ReadingKind::none, song), ElementsAre("", "", "", ""));
}

TEST(Reader, ALanguageInCyrillicIsToldByTheWholeSong) {
  EXPECT_THAT(readAs(ReadingKind::latin, {"гора", "їжак"}), ElementsAre("hora", "yizhak"));
  EXPECT_THAT(readAs(ReadingKind::latin, {"гора", "ёж"}), ElementsAre("gora", "yëzh"));
}

TEST(Reader, WithoutADictionaryKanaAreReadAndKanjiAreNot) {
  Reader reader(ReadingKind::automatic, "/nowhere");
  EXPECT_THAT(reader.read({"さくら", "桜が咲く", "かんぱい"}, always),
              ElementsAre("sakura", "", "kanpai"));
  EXPECT_THAT(reader.problem(), HasSubstr("mecab-ipadic-utf8"));
}

TEST(Reader, WhatOneSongLacksIsNotToldOfTheNext) {
  Reader reader(ReadingKind::automatic, "/nowhere");
  reader.read({"桜が咲く"}, always);
  EXPECT_THAT(reader.problem(), HasSubstr("mecab-ipadic-utf8"));
  reader.read({"我爱你"}, always);
  EXPECT_THAT(reader.problem(), IsEmpty());
  reader.read({"さくら"}, always);
  EXPECT_THAT(reader.problem(), IsEmpty()) << "kana alone are read without it";
}

TEST(Reader, NothingIsMissingWhereNoDictionaryIsNeeded) {
  Reader reader(ReadingKind::automatic, "/nowhere");
  EXPECT_THAT(reader.read({"我爱你"}, always), ElementsAre("wǒ ài nǐ"));
  EXPECT_THAT(reader.problem(), IsEmpty());
}

TEST(Reader, StopsWhereItIsTold) {
  int asked = 0;
  Reader reader(ReadingKind::romaja);
  EXPECT_THAT(reader.read({"가", "나", "다"}, [&] { return ++asked < 3; }),
              ElementsAre("ga", "na", ""));
}

TEST(Reader, HostileTextsAreReadWithoutHarm) {
  std::string every;
  for (int byte = 1; byte < 256; ++byte) every.push_back(static_cast<char>(byte));
  std::string syllables;
  for (int i = 0; i < 300; ++i) syllables.append("ㄱ각ｶﾞっッーン。，　漢\xE3\x81");
  for (const auto& line : {every, syllables, std::string(1000, '\xFF'), std::string("\xF0\x9F")}) {
    for (const auto& reading : readAs(ReadingKind::automatic, {line, "かな"})) {
      EXPECT_EQ(reading.find_first_of("\r\n\x1b"), std::string::npos);
    }
  }
}

TEST(Reader, EndingsOfASongDoNotLeadBeyondIt) {
  EXPECT_THAT(readAs(ReadingKind::automatic, {"っ", "ー", "ん", "각", "ッア", "こんや"}),
              ElementsAre("", "", "n", "gak", "a", "kon'ya"));
}

TEST(Reader, NoSongNoReadings) { EXPECT_THAT(readAs(ReadingKind::automatic, {}), IsEmpty()); }

}  // namespace
}  // namespace vellora::companion
