#include "contracts/platform_contract.h"

namespace vellora {

TEST_P(PlatformContract, MakesEverySeam) {
  Platform& platform = subject->platform();
  EXPECT_NE(platform.makeClock(), nullptr);
  EXPECT_NE(platform.makeAccessibility(), nullptr);
  EXPECT_NE(platform.makeWorkspace(), nullptr);
  EXPECT_NE(platform.makeMusicScripting(), nullptr);
  EXPECT_NE(platform.makeCaptionPainter(), nullptr);
  const auto view = platform.makeView();
  ASSERT_NE(view, nullptr);
  const auto panel = platform.makePanel();
  ASSERT_NE(panel, nullptr);
  panel->configure(*view);
  platform.makeStatusItem();  // null where there is no place for one
}

TEST_P(PlatformContract, HasOneApplication) {
  EXPECT_EQ(&subject->platform().application(), &subject->platform().application());
}

}  // namespace vellora
