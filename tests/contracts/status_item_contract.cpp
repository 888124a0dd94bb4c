#include "contracts/status_item_contract.h"

#include <utility>

#include <gmock/gmock.h>

namespace vellora {
namespace {

using testing::ElementsAre;
using Entry = StatusItemSubject::Entry;

MenuEntry command(std::string title, std::function<void()> action, std::string key = {}) {
  return {false, std::move(title), std::move(key), std::move(action)};
}
MenuEntry label(std::string title) { return command(std::move(title), {}); }

}  // namespace

TEST_P(StatusItemContract, TitleAndToolTipAreOnTheButtonIfThereIsOne) {
  StatusItem& item = subject->item();
  item.setTitle("old");
  item.setTitle("文");
  item.setToolTip("Vellora");
  EXPECT_EQ(subject->shownTitle(), item.hasButton() ? "文" : "");
  EXPECT_EQ(subject->shownToolTip(), item.hasButton() ? "Vellora" : "");
  item.setToolTip("Ready — bring Music to the front");
  EXPECT_EQ(subject->shownToolTip(), item.hasButton() ? "Ready — bring Music to the front" : "");
}

TEST_P(StatusItemContract, TheMenuShowsLabelSeparatorAndCommandsAsTheyAreTitled) {
  subject->item().setMenu({label("Vellora • Experimental"),
                           {true, {}, {}, {}},
                           command("a_b & c…", [] {}),
                           command(
                               "Stop overlay", [] {}, "q")});
  EXPECT_EQ(subject->shownMenu(), (std::vector<Entry>{{false, "Vellora • Experimental", false, ""},
                                                      {true, "", false, ""},
                                                      {false, "a_b & c…", true, ""},
                                                      {false, "Stop overlay", true, "q"}}));
}

TEST_P(StatusItemContract, AChosenCommandRunsEachTimeAndALabelDoesNothing) {
  std::vector<std::string> chosen;
  subject->item().setMenu({label("label"), command("first", [&] { chosen.push_back("first"); }),
                           command("second", [&] { chosen.push_back("second"); })});
  for (const std::size_t entry : {0u, 1u, 1u, 2u}) subject->choose(entry);
  EXPECT_THAT(chosen, ElementsAre("first", "first", "second"));
}

TEST_P(StatusItemContract, AnActionMayReplaceTheMenu) {
  subject->item().setMenu({command("first", [&] { subject->item().setMenu({label("other")}); })});
  subject->choose(0);
  EXPECT_THAT(subject->shownMenu(), ElementsAre(Entry{false, "other", false, ""}));
}

}  // namespace vellora
