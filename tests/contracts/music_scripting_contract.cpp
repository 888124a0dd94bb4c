#include "contracts/music_scripting_contract.h"

#include <gmock/gmock.h>

namespace vellora {

TEST_P(MusicScriptingContract, EachRequestHasItsOwnOutcome) {
  for (int round = 0; round < 2; ++round) {
    const ScriptOutcome answered = subject->scripting().run(subject->answeredRequest());
    EXPECT_TRUE(answered.created);
    EXPECT_EQ(answered.reply, subject->answer());
    EXPECT_EQ(answered.errorDescription, std::nullopt);

    const ScriptOutcome refused = subject->scripting().run(subject->refusedRequest());
    EXPECT_TRUE(refused.created);
    EXPECT_EQ(refused.reply, std::nullopt);
    EXPECT_THAT(refused.errorDescription,
                testing::Optional(testing::HasSubstr(subject->refusal())));
  }
}

}  // namespace vellora
