#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "music/lyrics_layout_reader.h"
#include "platform/linux/accessibility/fake_session.h"
#include "platform/linux/accessibility/linux_accessibility.h"
#include "platform/system_clock.h"

namespace vellora {

namespace FakeRole {
inline constexpr std::uint32_t dialog = 16;
inline constexpr std::uint32_t frame = 23;
inline constexpr std::uint32_t label = 29;
inline constexpr std::uint32_t panel = 39;
inline constexpr std::uint32_t button = 43;
inline constexpr std::uint32_t scrollPane = 49;
inline constexpr std::uint32_t window = 69;  // of GTK, one that pops up
}  // namespace FakeRole

// For tests that are run with the accessibility bus alone, and with a program's own beside it.
inline void PrintTo(OwnBus way, std::ostream* out) {
  *out << (way == OwnBus::open ? "OwnBus" : "BusAlone");
}
inline std::string nameOfWay(const testing::TestParamInfo<OwnBus>& way) {
  return testing::PrintToString(way.param);
}

// A session with its services, and the reading of a fake program's windows.
class ReadingFixture : public testing::Test {
 protected:
  // A tree: the root 0, its window 1 labelled "Lyrics", and the rows in it from 2 on.
  static FakeProgram programWithRows(int count) {
    FakeProgram program;
    program.objects.resize(2);
    program.objects[0].children = {1};
    program.objects[1] = {.role = FakeRole::frame,
                          .name = "Lyrics",
                          .extents = std::array<std::int32_t, 4>{0, 0, 1000, 700}};
    for (int i = 0; i < count; ++i) add(program, 1, row("row " + std::to_string(i), i * 10));
    return program;
  }

  static FakeAccessible row(std::string name, std::int32_t top) {
    return {.role = FakeRole::button,
            .name = std::move(name),
            .extents = std::array<std::int32_t, 4>{10, top, 300, 20}};
  }

  static std::size_t add(FakeProgram& program, std::size_t parent, FakeAccessible object) {
    program.objects.push_back(std::move(object));
    program.objects[parent].children.push_back(program.objects.size() - 1);
    return program.objects.size() - 1;
  }

  void start(FakeProgram program) {
    if (program.ownBus == OwnBus::missing && !program.ownAddress) program.ownBus = ownBus;
    player = std::make_unique<FakeProgramProcess>(bus, program);
  }

  // Seconds that nothing takes which ends by itself, on the slowest machine.
  static constexpr double hanging = 20;
  // Limits of a reading whose time is never over.
  static constexpr ReadingLimits patient{.seconds = 1000, .messagingTimeout = 1000};

  std::optional<MusicLayout> read(const ReadingLimits& limits = {}) {
    return readMusic(player->pid(), *accessibility, clock, musicPlayer, limits);
  }

  // A reading with that many rows: a busy machine may cut one short, which is then taken again.
  MusicLayout readRows(std::size_t count, const ReadingLimits& limits = {}) {
    std::optional<MusicLayout> layout;
    eventually([&] {
      layout = read(limits);
      return layout && layout->rows.size() == count;
    });
    EXPECT_TRUE(layout.has_value());
    MusicLayout whole = layout.value_or(MusicLayout());
    EXPECT_EQ(whole.rows.size(), count);
    awaitLink();
    return whole;
  }

  // Once for each player that has a bus of its own: reads on until that is asked, too. A player
  // whose changes are not followed is not asked there.
  void awaitLink() {
    if (ownBus != OwnBus::open || linked == player->pid()) return;
    linked = player->pid();
    for (int i = 0; i < mostUntilLinked && player->counts().direct < 2; ++i) read();
  }

  static std::vector<std::string> texts(const MusicLayout& layout) {
    std::vector<std::string> result;
    for (const MusicRow& row : layout.rows) result.push_back(row.text);
    return result;
  }

  // Wall time of `action` in seconds.
  template <class Action>
  static double seconds(Action action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  }

  // Whether the condition comes true in good time.
  template <class Condition>
  static bool eventually(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
    }
    return true;
  }

  static constexpr int mostUntilLinked = 10;
  OwnBus ownBus = OwnBus::missing;  // of the programs that are started
  pid_t linked = -1;
  PrivateBus bus;
  std::unique_ptr<ChildProcess> services = startServices(bus, {true, bus.address()});
  std::unique_ptr<FakeProgramProcess> player;
  std::shared_ptr<Accessibility> accessibility = makeLinuxAccessibility();
  SystemClock clock;
};

}  // namespace vellora
