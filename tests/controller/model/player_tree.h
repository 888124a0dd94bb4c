#pragma once

#include <memory>
#include <string_view>

#include "controller/model/world.h"
#include "support/fake_accessibility.h"

namespace vellora::model {

// The player's accessible elements, with what a real one has around its lyrics.
inline std::shared_ptr<FakeElement> playerTree(const PlayerWindow& player) {
  const auto box = [](FakeElement& element, const Box& frame) {
    element.frame({frame.x, frame.y, frame.width, frame.height});
  };
  auto application = fakeElement();
  if (!player.there) return application;
  auto window = fakeElement();
  application->windows({window});
  window->role("AXWindow").set(AccessibilityAttribute::minimized, player.minimised);
  box(*window, player.frame);
  AccessibilityElements children;
  if (player.title) {
    auto title = fakeElement();
    title->identifier("Music.nowPlaying.title-Music.nowPlaying.subtitle")
        .description(*player.title);
    children.push_back(title);
  }
  auto button = fakeElement();  // one that is no row
  button->role("AXButton").title("Hello world").frame({10, 300, 200, 30});
  children.push_back(button);
  if (player.lyricsShown) {
    AccessibilityElements rows;
    for (const Row& row : player.rows) {
      auto element = fakeElement();
      element->role("AXButton").title(row.text);
      element->frame(
          {row.frame.x, row.frame.y - player.scrolled, row.frame.width, row.frame.height});
      rows.push_back(element);
    }
    auto lyrics = fakeElement();
    lyrics->role("AXScrollArea").description("Lyrics").children(rows);
    box(*lyrics, player.scrollArea);
    children.push_back(lyrics);
  }
  window->children(children);
  return application;
}

}  // namespace vellora::model
