#include <cmath>
#include <limits>

#include "contracts/view_contract.h"

namespace vellora {
namespace {

constexpr Rect somewhere{100, 150, 400, 300};
constexpr Rect elsewhere{40, 250, 200, 100};

}  // namespace

TEST_P(PanelContract, MakingConfiguringAndPlacingItShowsNothing) {
  subject->panel().configure(subject->view());
  subject->panel().setFrame(somewhere);
  EXPECT_FALSE(subject->isShown());
}

TEST_P(PanelContract, IsShownAndHiddenHoweverOftenThatIsSaid) {
  subject->panel().configure(subject->view());
  subject->panel().setFrame(somewhere);
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 2; ++i) subject->panel().orderFrontRegardless();
    EXPECT_TRUE(subject->isShown());
    for (int i = 0; i < 2; ++i) subject->panel().orderOut();
    EXPECT_FALSE(subject->isShown());
  }
}

TEST_P(PanelContract, LiesWhereItsFrameSaysAndStaysThereWhenConfiguredAgain) {
  subject->panel().configure(subject->view());
  subject->panel().setFrame(somewhere);
  subject->panel().orderFrontRegardless();
  EXPECT_EQ(subject->shownFrame(), somewhere);
  subject->panel().setFrame(elsewhere);
  EXPECT_EQ(subject->shownFrame(), elsewhere);
  subject->panel().configure(subject->view());
  EXPECT_TRUE(subject->isShown());
  EXPECT_EQ(subject->shownFrame(), elsewhere);
}

TEST_P(PanelContract, FramesThatNoWindowCanHaveDoNoHarm) {
  subject->panel().configure(subject->view());
  subject->panel().setFrame(somewhere);
  subject->panel().orderFrontRegardless();
  constexpr double inf = std::numeric_limits<double>::infinity();
  const double nan = std::nan("");
  for (const Rect& strange :
       {Rect{nan, nan, nan, nan}, Rect{-inf, -inf, inf, inf}, Rect{inf, inf, 0, 0},
        Rect{1e300, -1e300, 1e300, 1e300}, Rect{0, 1e10, 10, 10}}) {
    subject->panel().setFrame(strange);
  }
  subject->panel().setFrame(elsewhere);
  EXPECT_TRUE(subject->isShown());
  EXPECT_EQ(subject->shownFrame(), elsewhere);
}

}  // namespace vellora
