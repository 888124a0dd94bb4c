#include <algorithm>
#include <cstdint>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/players/player_descriptions.h"

namespace vellora {
namespace {

using ::testing::IsSupersetOf;

constexpr std::uint32_t section = 85;
constexpr std::uint32_t paragraph = 73;
constexpr std::uint32_t pushButton = 43;
constexpr std::uint32_t article = 109;

ElementTraits element(std::uint32_t role, const std::string& classes) {
  return {.role = role, .name = {}, .classes = classes, .id = {}};
}

// What Chromium and Firefox tell of a player's page.
struct Page {
  const char* identifier;
  const char* address;
  ElementTraits view;
  ElementTraits row;
};

const Page pages[] = {
    {.identifier = "am-lyrics",
     .address = "https://music.example.org/album/1",
     .view = element(section, "lyrics-container blur-inactive-enabled"),
     .row = element(pushButton, "lyrics-line singer-left active lyrics-activest")},
    {.identifier = "applemusic-like-lyrics",
     .address = "http://localhost:5173/",
     .view = element(section, "amll-lyric-player dom"),
     .row = element(section, "FmKaba_lyricLineWrapper")},
    {.identifier = "feishin",
     .address = "https://feishin.example.org/#/now-playing",
     .view = element(section, "_container_1x2y3_1 synchronized-lyrics overlay-scrollbar"),
     .row = element(section, "_lyricLine_1x2y3_4 lyric-line synchronized active")},
    {.identifier = "jellyfin",
     .address = "http://192.168.1.2:8096/web/#/lyrics",
     .view = element(section, "page lyricPage"),
     .row = element(section, "lyricsLine dynamicLyric pastLyric")},
    {.identifier = "koel",
     .address = "https://koel.example.org/#/songs",
     .view = element(article, "scroll-mask-y overflow-y-auto space-y-2 absolute inset-0 px-6"),
     .row = element(paragraph, "active relative leading-relaxed origin-left text-k-fg")},
    {.identifier = "music-assistant",
     .address = "http://homeassistant.local:8095/#/home",
     .view = element(section, "synced-container"),
     .row = element(section, "lyrics-line active")},
    {.identifier = "youtube-music",
     .address = "https://music.youtube.com/watch?v=1",
     .view = {.role = section, .name = {}, .classes = {}, .id = "synced-lyrics-container"},
     .row = element(section, "text-lyrics")},
};

class ShippedPagesTest : public ::testing::Test {
 protected:
  const DescriptionList list = readDescriptions({VELLORA_SHIPPED_PLAYERS});

  PlayerDescriptionPtr take(const std::string& identifier) const {
    const auto found = std::ranges::find(list.descriptions, identifier,
                                         [](const auto& one) { return one->identifier; });
    return found == list.descriptions.end() ? nullptr : *found;
  }
};

TEST_F(ShippedPagesTest, AreTakenByTheirAddressAndMarkup) {
  for (const Page& page : pages) {
    const auto player = take(page.identifier);
    ASSERT_TRUE(player && player->lyrics) << page.identifier;
    EXPECT_FALSE(descriptionsForPage(page.address, {player}).empty()) << page.identifier;
    EXPECT_TRUE(fits(player->lyrics->view, page.view)) << page.identifier;
    EXPECT_TRUE(fits(player->lyrics->row, page.row)) << page.identifier;
    EXPECT_FALSE(fits(player->lyrics->row, page.view)) << page.identifier;
  }
}

TEST_F(ShippedPagesTest, AreTakenForNoOthers) {
  for (const Page& page : pages) {
    for (const Page& other : pages) {
      if (&page == &other) continue;
      const auto player = take(page.identifier);
      ASSERT_TRUE(player && player->lyrics) << page.identifier;
      EXPECT_FALSE(fits(player->lyrics->view, other.view))
          << page.identifier << " takes " << other.identifier;
    }
  }
  EXPECT_TRUE(descriptionsForPage("https://example.org/news", {take("jellyfin")}).empty());
}

TEST_F(ShippedPagesTest, AreTakenInTheSameBrowsersAsALabelledRegion) {
  const auto region = take("labelled-region");
  ASSERT_TRUE(region);
  for (const Page& page : pages) {
    const auto player = take(page.identifier);
    ASSERT_TRUE(player) << page.identifier;
    EXPECT_THAT(player->windowClasses, IsSupersetOf(region->windowClasses)) << page.identifier;
  }
}

}  // namespace
}  // namespace vellora
