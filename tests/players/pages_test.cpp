#include <tuple>

#include "players/browsers.h"

namespace vellora::e2e {
namespace {

// A page of tests/players/pages, and which song it plays.
struct Page {
  std::string name;
  std::size_t song = 1;
};
void PrintTo(const Page& page, std::ostream* out) { *out << page.name; }

using PageInBrowser = std::tuple<Browser, Page>;

class PagesInBrowsers : public BrowserDesk, public testing::WithParamInterface<PageInBrowser> {
 protected:
  PagesInBrowsers() : BrowserDesk(std::get<Browser>(GetParam())) {}
  static const Page& page() { return std::get<Page>(GetParam()); }
};

TEST_P(PagesInBrowsers, CaptionsStandUnderTheRowsAndFollowThem) {
  describe("verses.player",
           "[Player]\nName=Bare elements\n"
           "[Window]\nClass=Chromium;firefox-esr\nDocument=file://*/bare.html*\n"
           "[Lyrics]\nClass=verse-list\n"
           "[Row]\nClass=verse\n");
  ASSERT_NO_FATAL_FAILURE(follow(page().name + ".html", page().song));
  const auto threeCaptions = [&] {
    const auto verdict = look();
    return verdict && verdict->right && verdict->captions >= 3;
  };
  EXPECT_TRUE(waitFor(threeCaptions)) << whatIsSeen();
  // Further on in the song other rows are in view.
  const auto rows = seenPlayer();
  ASSERT_TRUE(rows);
  send(MusicCommand(now(), MusicCommand::Action::seek, "", "", 30));
  EXPECT_TRUE(waitFor(
      [&] {
        const auto seen = seenPlayer();
        return seen && seen->rows != rows->rows && threeCaptions();
      },
      30))
      << "captions did not follow\n"
      << whatIsSeen();
}

INSTANTIATE_TEST_SUITE_P(All, PagesInBrowsers,
                         testing::Combine(testing::Values(chromiumApplication, firefox),
                                          testing::Values(Page{"labelled"}, Page{"bare"},
                                                          Page{"spans", 6}, Page{"crowded"},
                                                          Page{"virtual"}, Page{"renewed"},
                                                          Page{"rtl", 7})),
                         [](const testing::TestParamInfo<PageInBrowser>& test) {
                           return std::get<Browser>(test.param).name + "_" +
                                  std::get<Page>(test.param).name;
                         });

}  // namespace
}  // namespace vellora::e2e
