#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/accessibility/reading_fixture.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

namespace FakeRole {
inline constexpr std::uint32_t documentWeb = 95;
inline constexpr std::uint32_t section = 85;
inline constexpr std::uint32_t landmark = 110;
inline constexpr std::uint32_t text = 116;
}  // namespace FakeRole

namespace FakeState {
inline constexpr std::uint64_t active = 1U << 1U;
inline constexpr std::uint64_t showing = 1U << 25U;
}  // namespace FakeState

// A browser with a page that has lyrics, and the description of such pages.
class DescribedFixture : public ReadingFixture {
 protected:
  using Extents = std::array<std::int32_t, 4>;

  DescribedFixture() { remember(std::chrono::hours(1)); }

  // Readings from here on believe what they have found for so long.
  void remember(std::chrono::steady_clock::duration longest) {
    accessibility = makeLinuxAccessibility(longest, windows);
  }

  // A browser that plays, its window at (100, 50), in it a hidden page and one that shows, and in
  // that a region labelled "Lyrics" of 400 by 300 with rows 100 apart.
  void makePage(int rowCount) {
    program = {};
    program.toolkit = "Gecko";
    program.hasCollection = true;
    program.media["browser"] = {.title = "Song", .artists = {"One", "Two"}};
    program.objects.resize(1);
    frame = add(program, 0,
                {.role = FakeRole::frame,
                 .name = "Browser",
                 .extents = Extents{100, 50, 1000, 700},
                 .states = FakeState::active | FakeState::showing});
    const std::size_t hidden = add(program, frame, {.role = FakeRole::documentWeb});
    program.objects[hidden].address = "about:newtab";
    document = add(program, frame,
                   {.role = FakeRole::documentWeb,
                    .extents = Extents{100, 150, 1000, 600},
                    .states = FakeState::showing});
    program.objects[document].address = "https://music.example/song";
    add(program, document, {.role = FakeRole::section});
    view =
        add(program, document,
            {.role = FakeRole::landmark, .name = "Lyrics", .extents = Extents{300, 200, 400, 300}});
    add(program, document, {.role = FakeRole::button, .name = "Play"});
    rows.clear();
    for (int i = 0; i < rowCount; ++i) {
      rows.push_back(add(program, view, pageRow("line " + std::to_string(i), 200 + 100 * i)));
    }
  }

  static FakeAccessible pageRow(std::string name, std::int32_t top) {
    FakeAccessible made = row(std::move(name), top);
    made.extents = Extents{310, top, 300, 40};
    return made;
  }

  // Rows are the buttons in a landmark labelled "Lyrics".
  static PlayerDescription labelled() {
    PlayerDescription made;
    made.identifier = "labelled";
    made.documents = {"https://*"};
    made.lyrics.emplace();
    made.lyrics->view.roles = {FakeRole::landmark};
    made.lyrics->view.names = {"Lyrics"};
    made.lyrics->row.roles = {FakeRole::button};
    return made;
  }

  void describe(PlayerDescription only) {
    window.descriptions = {std::make_shared<PlayerDescription>(std::move(only))};
  }

  // Starts the program as the process of the described window.
  void begin() {
    start(program);
    window.process = player->pid();
    windows->bringToFront(window);
  }

  FakeAccessible& object(std::size_t place) { return program.objects[place]; }

  template <class Edit>
  void change(std::size_t place, Edit edit) {
    edit(object(place));
    player->put(place, object(place));
  }

  void scroll(std::int32_t distance) {
    for (const std::size_t one : rows) {
      change(one, [distance](FakeAccessible& it) { (*it.extents)[1] -= distance; });
    }
  }

  // A reading that has all the time there is.
  MusicLayout readPage() {
    const auto layout = read(patient);
    EXPECT_TRUE(layout.has_value());
    return layout.value_or(MusicLayout());
  }

  std::vector<std::string> readTexts() { return texts(readPage()); }
  // Tops of the rows that can be seen.
  static std::vector<double> topsInSight(const MusicLayout& layout) {
    std::vector<double> result;
    for (const MusicRow& one : layout.rows) {
      if (one.frame.intersects(layout.viewport)) result.push_back(one.frame.y);
    }
    return result;
  }

  // What the program is asked in one reading.
  int questions() {
    const int before = player->counts().all;
    readPage();
    return player->counts().all - before;
  }

  std::shared_ptr<PlayerWindows> windows = std::make_shared<PlayerWindows>();
  FakeProgram program;
  PlayerWindow window{.process = 0,
                      .descriptions = {std::make_shared<PlayerDescription>(labelled())},
                      .clientArea = Rect{100, 50, 1000, 700}};
  std::size_t frame = 0;
  std::size_t document = 0;
  std::size_t view = 0;
  std::vector<std::size_t> rows;
};

}  // namespace vellora
