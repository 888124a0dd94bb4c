#include "platform/linux/window_system/choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const WaylandOffer everything{true, "", true};

TEST(WindowSystemChoiceTest, WithoutACompositorNamedAndNothingForcedItIsX11AndNothingIsSaid) {
  for (const bool display : {false, true}) {
    const WindowSystemWishes wishes{false, display, ""};
    EXPECT_FALSE(needsWaylandOffer(wishes));
    EXPECT_EQ(chooseWindowSystem(wishes, std::nullopt),
              (WindowSystemChoice{WindowSystemKind::x11, {}}));
  }
}

TEST(WindowSystemChoiceTest, ACompositorThatHasAllIsUsedWhetherOrNotThereIsAnXServer) {
  for (const bool display : {false, true}) {
    const WindowSystemWishes wishes{true, display, ""};
    EXPECT_TRUE(needsWaylandOffer(wishes));
    EXPECT_EQ(chooseWindowSystem(wishes, everything),
              (WindowSystemChoice{WindowSystemKind::wayland, {"using Wayland."}}));
  }
}

TEST(WindowSystemChoiceTest, WhatACompositorLacksIsSaidAndX11Used) {
  struct Row {
    WaylandOffer offer;
    const char* reason;
  };
  for (const auto& [offer, reason] :
       {Row{{false, "", false}, "the compositor that WAYLAND_DISPLAY names does not answer"},
        Row{{true, "zwlr_layer_shell_v1", true},
            "the compositor does not offer zwlr_layer_shell_v1"},
        Row{{true, "wp_viewporter", true}, "the compositor does not offer wp_viewporter"},
        Row{{true, "", false}, "this compositor is not known to tell where windows are"}}) {
    const auto choice = chooseWindowSystem({true, true, ""}, offer);
    EXPECT_EQ(choice.kind, WindowSystemKind::x11) << reason;
    EXPECT_THAT(choice.lines, ElementsAre(std::string("using X11, and seeing X11 programs only: ") +
                                          reason + "."));
    const auto without = chooseWindowSystem({true, false, ""}, offer);
    EXPECT_EQ(without.kind, WindowSystemKind::x11) << reason;
    EXPECT_THAT(without.lines, ElementsAre(std::string("Wayland cannot be used: ") + reason + "."));
    const auto forced = chooseWindowSystem({true, true, "wayland"}, offer);
    EXPECT_EQ(forced.kind, WindowSystemKind::none) << reason;
    EXPECT_THAT(forced.lines, ElementsAre(std::string("Wayland cannot be used, as "
                                                      "VELLORA_WINDOW_SYSTEM says: ") +
                                          reason + "."));
  }
}

TEST(WindowSystemChoiceTest, X11IsForcedWhateverTheCompositorOffers) {
  for (const bool compositor : {false, true}) {
    const WindowSystemWishes wishes{compositor, true, "x11"};
    EXPECT_FALSE(needsWaylandOffer(wishes));
    EXPECT_EQ(
        chooseWindowSystem(wishes, std::nullopt),
        (WindowSystemChoice{WindowSystemKind::x11, {"using X11, as VELLORA_WINDOW_SYSTEM says."}}));
  }
}

TEST(WindowSystemChoiceTest, WaylandIsForcedOnlyWhereItIs) {
  EXPECT_EQ(chooseWindowSystem({true, true, "wayland"}, everything),
            (WindowSystemChoice{WindowSystemKind::wayland,
                                {"using Wayland, as VELLORA_WINDOW_SYSTEM says."}}));
  const auto nowhere = chooseWindowSystem({false, true, "wayland"}, std::nullopt);
  EXPECT_EQ(nowhere.kind, WindowSystemKind::none);
  EXPECT_THAT(nowhere.lines, ElementsAre(HasSubstr("WAYLAND_DISPLAY is not set")));
}

TEST(WindowSystemChoiceTest, AnUnknownValueIsSaidAndDoesNotCount) {
  const auto wayland = chooseWindowSystem({true, true, "Wayland"}, everything);
  EXPECT_EQ(wayland.kind, WindowSystemKind::wayland);
  EXPECT_THAT(wayland.lines,
              ElementsAre("VELLORA_WINDOW_SYSTEM is \"Wayland\", which is neither x11 nor wayland, "
                          "and does not count.",
                          "using Wayland."));
  const auto x11 = chooseWindowSystem({false, true, "mir"}, std::nullopt);
  EXPECT_EQ(x11.kind, WindowSystemKind::x11);
  EXPECT_THAT(x11.lines, ElementsAre(HasSubstr("\"mir\"")));
}

}  // namespace
}  // namespace vellora
