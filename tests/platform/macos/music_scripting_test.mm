#import "platform/macos/music_scripting.h"

#include <gtest/gtest.h>

namespace vellora {
namespace {

// Scripts that talk to no other program: no permission is asked for.
ScriptOutcome run(const std::string& source) { return makeAppleScripting()->run({source, {}}); }

TEST(MusicScriptingTest, GivesTheReplysText) {
  const ScriptOutcome outcome = run("return \"a\" & linefeed & \"日本語\"");
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, "a\n日本語");
  EXPECT_EQ(outcome.errorDescription, std::nullopt);
}

TEST(MusicScriptingTest, NumbersAreRepliedAsText) { EXPECT_EQ(run("return 6 * 7").reply, "42"); }

TEST(MusicScriptingTest, AReplyWithoutTextIsNone) {
  const ScriptOutcome outcome = run("return {1, 2}");
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, std::nullopt);
  EXPECT_EQ(outcome.errorDescription, std::nullopt);
}

TEST(MusicScriptingTest, AnErrorIsDescribed) {
  const ScriptOutcome outcome = run("error \"the needle is stuck\" number 77");
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, std::nullopt);
  ASSERT_TRUE(outcome.errorDescription);
  EXPECT_NE(outcome.errorDescription->find("the needle is stuck"), std::string::npos);
  EXPECT_NE(outcome.errorDescription->find("77"), std::string::npos);
}

TEST(MusicScriptingTest, AScriptThatIsNoneFailsWithADescription) {
  const ScriptOutcome outcome = run("tell me to to");
  EXPECT_EQ(outcome.reply, std::nullopt);
  EXPECT_TRUE(outcome.errorDescription);
}

TEST(MusicScriptingTest, EachRequestStartsAnew) {
  EXPECT_EQ(run("property n : 0\nset n to n + 1\nreturn n").reply, "1");
  EXPECT_EQ(run("property n : 0\nset n to n + 1\nreturn n").reply, "1");
}

}  // namespace
}  // namespace vellora
