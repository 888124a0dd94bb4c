#include "companion/lyrics/table.h"

#include <gtest/gtest.h>

#include "companion/lines_text.h"

namespace vellora::companion {
namespace {

struct TableCase {
  const char* what;
  const char* text;
  const char* lines;
  const char* problems;
};

class PoForms : public testing::TestWithParam<TableCase> {};

TEST_P(PoForms, AreRead) {
  const LyricFile file = readPo("a.po", GetParam().text);
  EXPECT_TRUE(file.isTable);
  EXPECT_EQ(textOf(file), GetParam().lines) << GetParam().what;
  EXPECT_EQ(textOf(file.problems), GetParam().problems) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Each, PoForms,
    testing::Values(
        TableCase{"simple", "msgid \"a\"\nmsgstr \"b\"\n\nmsgid \"c\"\nmsgstr \"d\"\n", "a=b|c=d",
                  ""},
        TableCase{"without blank lines", "msgid \"a\"\nmsgstr \"b\"\nmsgid \"c\"\nmsgstr \"d\"",
                  "a=b|c=d", ""},
        TableCase{"over several lines", "msgid \"\"\n\"a \"\n\"b\"\nmsgstr \"c\"\n\" d\"\n",
                  "a b=c d", ""},
        TableCase{"escapes", "msgid \"say \\\"hi\\\"\\n\"\nmsgstr \"back\\\\slash\\ttab\"\n",
                  "say \"hi\"=back\\slash tab", ""},
        TableCase{"comments", "# x\n#. y\n#: z:1\nmsgid \"a\"\nmsgstr \"b\"\n#~ msgid \"o\"\n",
                  "a=b", ""},
        TableCase{"context", "msgctxt \"verse\"\nmsgid \"a\"\nmsgstr \"b\"\n", "a=b", ""},
        TableCase{"untranslated", "msgid \"a\"\nmsgstr \"\"\n", "a", ""},
        TableCase{"fuzzy", "#, fuzzy\nmsgid \"a\"\nmsgstr \"b\"\n\nmsgid \"c\"\nmsgstr \"d\"\n",
                  "c=d",
                  "a.po:2: note: the entry is fuzzy, and left out; look at it and remove the mark "
                  "\"#, fuzzy\""},
        TableCase{"no msgstr", "msgid \"a\"\n\nmsgid \"c\"\nmsgstr \"d\"\n", "c=d",
                  "a.po:1: warning: msgid without a msgstr after it; add msgstr \"…\""},
        TableCase{"no msgid", "msgstr \"a\"\nmsgid \"c\"\nmsgstr \"d\"\n", "c=d",
                  "a.po:1: warning: msgstr without a msgid before it; put the line that is "
                  "translated before it, as msgid \"…\""},
        TableCase{"open quote", "msgid \"a\nmsgstr \"b\"\nmsgid \"c\"\nmsgstr \"d\"\n", "c=d",
                  "a.po:1: warning: \"\"a\" is not in whole double quotes; a quote within the text "
                  "is written \\\""},
        TableCase{
            "plural", "msgid \"a\"\nmsgid_plural \"as\"\nmsgstr \"b\"\n", "a=b",
            "a.po:2: warning: \"msgid_plural\" is nothing that a song's table has; an entry is "
            "a line msgid \"…\" and a line msgstr \"…\""},
        TableCase{"empty", "", "",
                  "a.po: error: no lines; an entry is a line msgid \"…\" and a line msgstr "
                  "\"…\""}));

TEST(Po, TheHeaderMayNameTheSong) {
  const LyricFile file = readPo("a.po",
                                "msgid \"\"\nmsgstr \"\"\n\"Language: de\\n\"\n\"X-Title: T\\n\"\n"
                                "\"X-Artist: A\\n\"\n\nmsgid \"a\"\nmsgstr \"b\"\n");
  EXPECT_EQ(textOf(file), "a=b");
  EXPECT_EQ(file.tags,
            (std::map<std::string, std::string>{{"ti", "T"}, {"ar", "A"}, {"la", "de"}}));
}

class TsvForms : public testing::TestWithParam<TableCase> {};

TEST_P(TsvForms, AreRead) {
  const LyricFile file = readTsv("a.tsv", GetParam().text);
  EXPECT_TRUE(file.isTable);
  EXPECT_EQ(textOf(file), GetParam().lines) << GetParam().what;
  EXPECT_EQ(textOf(file.problems), GetParam().problems) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Each, TsvForms,
    testing::Values(
        TableCase{"simple", "a\tb\nc\td\n", "a=b|c=d", ""},
        TableCase{"remark", "a\tb\tc\n", "a=b", ""},
        TableCase{"comment and blank", "# x\n\n \na\tb", "a=b", ""},
        TableCase{"untranslated", "a\t\nb\tc", "a|b=c", ""},
        TableCase{"no tab", "a b\nc\td", "a b|c=d",
                  "a.tsv:1: warning: no tab in \"a b\"; put one between the line and its "
                  "translation"},
        TableCase{"no source", "\tb\nc\td", "c=d",
                  "a.tsv:1: warning: nothing before the tab; put the line there that is "
                  "translated"},
        TableCase{"empty", "\n", "",
                  "a.tsv: error: no lines; a line of the table is the source, a tab and "
                  "the translation"}));

}  // namespace
}  // namespace vellora::companion
