#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/linux/accessibility/reading_fixture.h"

namespace vellora {

inline constexpr const char* nameChanged = "accessible-name";
inline constexpr const char* childrenChanged = FakeProgramProcess::childrenChanged;

// A window with a label, and a box of rows that are buttons with a label inside. A spare row stands
// in no list yet.
class MemoryFixture : public ReadingFixture {
 protected:
  MemoryFixture() {
    // Longer than any test: what a reading sees is signalled, and not just asked again at last.
    accessibility = makeLinuxAccessibility(std::chrono::hours(1));
    program = programWithRows(0);
    title = add(program, 1,
                {.role = FakeRole::label,
                 .name = "first song",
                 .identifier = "Music.nowPlaying.title-Music.nowPlaying.subtitle"});
    box = add(program, 1, {.role = FakeRole::panel});
    for (int i = 0; i < 3; ++i) {
      rows.push_back(add(program, box, row("row " + std::to_string(i), i * 10)));
      labels.push_back(add(program, rows.back(), {.role = FakeRole::label, .name = "label"}));
    }
    program.objects.push_back(row("spare", 100));
    spare = program.objects.size() - 1;
  }

  FakeAccessible& object(std::size_t place) { return program.objects[place]; }

  // Changes the object here and in the player.
  template <class Edit>
  void change(std::size_t place, Edit edit, const char* signal = "") {
    edit(object(place));
    player->change(place, object(place), signal);
  }

  std::vector<std::string> readTexts() { return texts(readRows(3)); }

  // Lets the player go on, and waits until it has answered what waited for it.
  void wake() {
    const int before = player->counts().all;
    player->process().resume();
    EXPECT_TRUE(eventually([&] { return player->counts().all > before; }));
    bus.connections();  // a round trip, so that all were answered that came before
  }

  // What the player is asked in one whole reading with three rows.
  int questions() {
    const int before = player->counts().all;
    readRows(3);
    return player->counts().all - before;
  }

  FakeProgram program;
  std::size_t title;
  std::size_t box;
  std::vector<std::size_t> rows;
  std::vector<std::size_t> labels;
  std::size_t spare;
};

}  // namespace vellora
