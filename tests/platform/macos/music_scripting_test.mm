#import "platform/macos/music_scripting.h"

#include <gtest/gtest.h>

namespace vellora {
namespace {

// Scripts that talk to no other program: no permission is asked for.
ScriptOutcome run(const std::string& source) { return makeAppleScripting()->run({source, {}}); }

TEST(MusicScriptingTest, NumbersAreRepliedAsText) { EXPECT_EQ(run("return 6 * 7").reply, "42"); }

TEST(MusicScriptingTest, AReplyWithoutTextIsNone) {
  const ScriptOutcome outcome = run("return {1, 2}");
  EXPECT_TRUE(outcome.created);
  EXPECT_EQ(outcome.reply, std::nullopt);
  EXPECT_EQ(outcome.errorDescription, std::nullopt);
}

TEST(MusicScriptingTest, AScriptThatIsNoneFailsWithADescription) {
  const ScriptOutcome outcome = run("tell me to to");
  EXPECT_EQ(outcome.reply, std::nullopt);
  EXPECT_TRUE(outcome.errorDescription);
}

}  // namespace
}  // namespace vellora
