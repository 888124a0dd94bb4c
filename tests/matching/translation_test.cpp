#include "matching/translation.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vellora::OverlayMatching {
namespace {

using Lines = std::vector<OverlayLine>;

const Lines holdOn = {{"Hold on,", "Tiens bon,"},
                      {"hold on to me", "tiens-moi"},
                      {"Hold on to me", "Accroche-toi à moi"}};

// Lines "one" to "count" with the translations "1" to "count".
Lines counted(std::size_t count) {
  const std::vector<std::string> words = {"one", "two", "three", "four", "five", "six", "seven"};
  Lines lines;
  for (std::size_t at = 0; at < count; ++at) lines.push_back({words[at], std::to_string(at + 1)});
  return lines;
}

TEST(TranslationTest, EmptyListHasNoTranslation) {
  EXPECT_EQ(translation("Hold on", {}), std::nullopt);
  EXPECT_EQ(translation("", {}), std::nullopt);
}

TEST(TranslationTest, RowWithoutLettersAndDigitsHasNoTranslation) {
  EXPECT_EQ(translation("♪", holdOn), std::nullopt);
  EXPECT_EQ(translation("♪", {{"♪", "Musik"}, {"", "nichts"}}), std::nullopt);
}

TEST(TranslationTest, RowOfOneLineHasThatLinesTranslation) {
  EXPECT_EQ(translation("Hold on!", holdOn), "Tiens bon,");
}

TEST(TranslationTest, RowOfTwoLinesHasBothTranslationsWithASpaceBetween) {
  EXPECT_EQ(translation("Hold on, hold on to me", holdOn), "Tiens bon, tiens-moi");
}

TEST(TranslationTest, EarliestStartHidesLaterLinesOfTheSameKey) {
  EXPECT_EQ(translation("Hold on to me", holdOn), "tiens-moi");
  EXPECT_EQ(translation("la", {{"La", "first"}, {"la", "second"}, {"LA", "third"}}), "first");
}

TEST(TranslationTest, EarlierLongRunHidesALaterSingleLine) {
  const Lines lines = {{"hold", "halt"}, {"on", "fest"}, {"Hold on", "Halt dich fest"}};
  EXPECT_EQ(translation("Hold on", lines), "halt fest");
}

TEST(TranslationTest, EarlierSingleLineHidesALaterRun) {
  const Lines lines = {{"Hold on", "Halt dich fest"}, {"hold", "halt"}, {"on", "fest"}};
  EXPECT_EQ(translation("Hold on", lines), "Halt dich fest");
}

TEST(TranslationTest, PartOfALineHasNoTranslation) {
  EXPECT_EQ(translation("Hold", holdOn), std::nullopt);
  EXPECT_EQ(translation("Hold on, hold on", holdOn), std::nullopt);
}

TEST(TranslationTest, LineWithoutATranslationNeverContributes) {
  for (const std::string none : {"", "   ", "\n\u3000\t"}) {
    const Lines lines = {{"one", "eins"}, {"two", none}, {"three", "drei"}};
    EXPECT_EQ(translation("two", lines), std::nullopt);
    EXPECT_EQ(translation("one two", lines), std::nullopt);
    EXPECT_EQ(translation("one two three", lines), std::nullopt);
    EXPECT_EQ(translation("one three", lines), std::nullopt);
    EXPECT_EQ(translation("three", lines), "drei");
  }
}

TEST(TranslationTest, LineWithoutLettersBreaksTheRunsThroughIt) {
  const Lines lines = {{"one", "eins"}, {"♪", "Musik"}, {"two", "zwei"}};
  EXPECT_EQ(translation("one two", lines), std::nullopt);
  EXPECT_EQ(translation("one", lines), "eins");
  EXPECT_EQ(translation("two", lines), "zwei");
}

TEST(TranslationTest, LaterLineMayTakeThePlaceOfOneWithoutTranslation) {
  EXPECT_EQ(translation("la", {{"la", " "}, {"la", "da"}}), "da");
}

TEST(TranslationTest, TranslationsAreTrimmedAndKeepTheirInnerLineBreaks) {
  EXPECT_EQ(translation("one", {{"one", " \n eins \r\n"}}), "eins");
  EXPECT_EQ(translation("one", {{"one", "\nei\nns\n"}}), "ei\nns");
  EXPECT_EQ(translation("one two", {{"one", " eins "}, {"two", "\u2003zwei"}}), "eins zwei");
}

TEST(TranslationTest, RunsHoldSixLinesAndNoMore) {
  EXPECT_EQ(translation("one two three four five six", counted(7)), "1 2 3 4 5 6");
  EXPECT_EQ(translation("two three four five six seven", counted(7)), "2 3 4 5 6 7");
  EXPECT_EQ(translation("one two three four five six seven", counted(7)), std::nullopt);
}

TEST(TranslationTest, RunsStopAtTheEndOfTheList) {
  EXPECT_EQ(translation("two three", counted(3)), "2 3");
  EXPECT_EQ(translation("two three four", counted(3)), std::nullopt);
  EXPECT_EQ(translation("three one", counted(3)), std::nullopt);
}

TEST(TranslationTest, DifferencesOfWritingDoNotCount) {
  const Lines lines = {{"Déjà vu, my love", "Schon gesehen"}, {"後來的我們", "Später wir"}};
  for (const std::string row :
       {"DEJA VU MY LOVE", "De\u0301ja\u0300 vu my love", "déjà-vu; (my) love!",
        "ｄｅｊａ　ｖｕ　ｍｙ　ｌｏｖｅ", " dejavu  mylove\n"}) {
    EXPECT_EQ(translation(row, lines), "Schon gesehen") << row;
  }
  EXPECT_EQ(translation("后来的我们", lines), "Später wir");
  EXPECT_EQ(translation("后来，的我們", lines), "Später wir");
}

TEST(TranslationTest, KeysCompareByCanonicalEquivalence) {
  // The voiced mark stays apart in one key and composed in the other.
  EXPECT_EQ(translation("か\u3099", {{"が", "ga"}}), "ga");
  EXPECT_EQ(translation("각", {{"\u1100\u1161\u11A8", "kak"}}), "kak");
}

TEST(TranslationTest, SeamInsideACharacterMatchesNothing) {
  // The second source begins with the mark that belongs to the first's last letter.
  const Lines marks = {{"か", "ka"}, {"\u3099き", "mark"}};
  EXPECT_EQ(translation("がき", marks), std::nullopt);
  EXPECT_EQ(translation("か", marks), "ka");
  const Lines syllable = {{"가", "ka"}, {"\u11A8", "k"}};
  EXPECT_EQ(translation("각", syllable), std::nullopt);
  const Lines conjunct = {{"क्", "half"}, {"ष", "sa"}};
  EXPECT_EQ(translation("क्ष", conjunct), std::nullopt);
}

}  // namespace
}  // namespace vellora::OverlayMatching
