#include "companion/lyrics/ttml.h"

#include <gtest/gtest.h>

#include "companion/lines_text.h"

namespace vellora::companion {
namespace {

std::string document(const std::string& head, const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<tt xmlns=\"http://www.w3.org/ns/ttml\" "
         "xmlns:ttm=\"http://www.w3.org/ns/ttml#metadata\">\n"
         "<head>" +
         head + "</head>\n<body><div>\n" + body + "\n</div></body></tt>\n";
}

struct TtmlCase {
  const char* what;
  const char* body;  // begins on line 5
  const char* lines;
  const char* problems;
};

class TtmlForms : public testing::TestWithParam<TtmlCase> {};

TEST_P(TtmlForms, AreRead) {
  const LyricFile file = readTtml("a.ttml", document("", GetParam().body), "");
  EXPECT_EQ(textOf(file), GetParam().lines) << GetParam().what;
  EXPECT_EQ(textOf(file.problems), GetParam().problems) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Each, TtmlForms,
    testing::Values(
        TtmlCase{"simple",
                 "<p begin=\"00:00:01.000\" end=\"00:00:02.000\">a</p>\n<p begin=\"1:02.5\">b</p>",
                 "100 a|6250 b", ""},
        TtmlCase{"units",
                 "<p begin=\"1.5s\">a</p><p begin=\"2500ms\">b</p><p begin=\"1m\">c</p>"
                 "<p begin=\"0.5h\">d</p><p begin=\"90\">e</p>",
                 "150 a|250 b|6000 c|9000 e|180000 d", ""},
        TtmlCase{
            "words",
            "<p begin=\"1s\"><span begin=\"1s\">Hel</span><span>lo</span> <span>you</span></p>",
            "100 Hello you", ""},
        TtmlCase{"entities", "<p begin=\"1s\">a &amp; b &#x4F60; &lt;c&gt;</p>", "100 a & b 你 <c>",
                 ""},
        TtmlCase{"character data", "<p begin=\"1s\"><![CDATA[a < b]]></p>", "100 a < b", ""},
        TtmlCase{"line break", "<p begin=\"1s\">a<br/>b</p>", "100 a|100 b", ""},
        TtmlCase{"translation",
                 "<p begin=\"1s\">a<span ttm:role=\"x-translation\" xml:lang=\"de\">b"
                 "</span><span ttm:role=\"x-roman\">c</span><span ttm:role=\"x-bg\">(d)</span></p>",
                 "100 a=b", ""},
        TtmlCase{"no times", "<p>a</p><p>b</p>", "a|b", ""},
        TtmlCase{"empty line", "<p begin=\"1s\"> </p><p begin=\"2s\">b</p>", "200 b", ""},
        TtmlCase{"bad time", "<p begin=\"12f\">a</p>\n<p begin=\"2s\">b</p>", "200 b",
                 "a.ttml:5: warning: the time \"12f\" cannot be read; write it as 1:02.5 or 62.5s; "
                 "the line is left out"},
        TtmlCase{"one without a time", "<p begin=\"1s\">a</p>\n<p>b</p>", "100 a",
                 "a.ttml:6: warning: no \"begin\" for \"b\"; the line is left out; give it one"},
        TtmlCase{"no lines", "", "",
                 "a.ttml: error: no lines; a line of TTML is <p begin=\"1:02.5\" "
                 "end=\"1:05\">text</p>"}));

// Of translations into several variants of one language, in lines and in the head.
TEST(Ttml, TheWantedVariantIsTakenBeforeItsLanguageAndItsSisters) {
  const auto span = [](const std::string& language, const std::string& text) {
    return "<span ttm:role=\"x-translation\" xml:lang=\"" + language + "\">" + text + "</span>";
  };
  const auto inHead = [](const std::string& language, const std::string& text) {
    return "<translation xml:lang=\"" + language + "\"><text for=\"L1\">" + text +
           "</text></translation>";
  };
  const auto translated = [&](const std::string& head, const std::string& spans,
                              const char* wanted) {
    const std::string line = "<p begin=\"1s\" key=\"L1\">a" + spans + "</p>";
    return textOf(readTtml("a.ttml", document(head, line), wanted));
  };
  const std::string chinese = span("zh-Hant", "t") + span("zh-Hans", "s") + span("de", "d");
  EXPECT_EQ(translated("", chinese, "zh-Hans"), "100 a=s");
  EXPECT_EQ(translated("", chinese, "zh-Hant-HK"), "100 a=t");
  EXPECT_EQ(translated("", chinese, "de-AT"), "100 a=d");
  EXPECT_EQ(translated("", chinese, "fr"), "100 a=t");
  const std::string portuguese = inHead("pt-PT", "p") + inHead("pt-BR", "b") + inHead("en", "e");
  EXPECT_EQ(translated(portuguese, "", "pt-BR"), "100 a=b");
  EXPECT_EQ(translated(portuguese, "", "pt-PT"), "100 a=p");
  EXPECT_EQ(translated(portuguese, "", "en"), "100 a=e");
  EXPECT_EQ(translated(portuguese, "", "fr"), "100 a=p");
  EXPECT_EQ(translated(inHead("pt-PT", "p") + inHead("pt", "x"), "", "pt-BR"), "100 a=x");
}

TEST(Ttml, BrokenXmlIsToldWithItsLine) {
  const LyricFile file =
      readTtml("a.ttml", document("", "<p begin=\"1s\">a</p>\n<p begin=\"2s\">b</q>"), "");
  ASSERT_EQ(file.problems.size(), 1U);
  EXPECT_EQ(file.problems[0].line, 6);
  EXPECT_EQ(file.problems[0].text().find("a.ttml:6: error: not XML: "), 0U);
  EXPECT_TRUE(file.lines.empty());
}

constexpr const char* twoLanguages =
    "<metadata><ttm:title>Song</ttm:title><translations>"
    "<translation xml:lang=\"de\"><text for=\"L1\">ein</text></translation>"
    "<translation xml:lang=\"fr-FR\"><text for=\"L1\">un</text></translation>"
    "</translations></metadata>";

TEST(Ttml, TranslationsOfTheHeadAreTakenByKeyAndLanguage) {
  const std::string text =
      document(twoLanguages, "<p begin=\"1s\" itunes:key=\"L1\">one</p><p begin=\"2s\">two</p>");
  EXPECT_EQ(textOf(readTtml("a.ttml", text, "")), "100 one=ein|200 two");
  EXPECT_EQ(textOf(readTtml("a.ttml", text, "fr")), "100 one=un|200 two");
  EXPECT_EQ(textOf(readTtml("a.ttml", text, "en")), "100 one=ein|200 two");
  EXPECT_EQ(readTtml("a.ttml", text, "").tags.at("ti"), "Song");
}

TEST(Ttml, EntitiesOfItsOwnAreNotExpanded) {
  const LyricFile file =
      readTtml("a.ttml",
               "<!DOCTYPE tt [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]>"
               "<tt><body><p begin=\"1s\">&b;</p></body></tt>",
               "");
  EXPECT_EQ(textOf(file), "100 &b;");
}

}  // namespace
}  // namespace vellora::companion
