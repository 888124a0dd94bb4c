#include <cstdlib>

#include <malloc.h>

#include "controller/controller_fixture.h"
#include "faults/fault_cases.h"

namespace vellora {
namespace {

constexpr double secondsOfASong = 240;
constexpr int linesOfASong = 60;
constexpr int rowsInSight = 8;

// Half an hour; a whole day where VELLORA_LONG is set.
double secondsToFollow() { return std::getenv("VELLORA_LONG") != nullptr ? 86'400 : 1'800; }

std::string lineOf(int song, int line) {
  return "Line " + std::to_string(line) + " of song " + std::to_string(song);
}
std::string translationOf(int song, int line) {
  return "Zeile " + std::to_string(line) + " des Liedes " + std::to_string(song);
}

// A desktop on which song follows song, somebody works in another window now and then, the player
// is closed and opened, and a companion renews its files.
class LongDayTest : public ControllerTest {
 protected:
  void SetUp() override {
    begin = now();
    controller->applicationDidFinishLaunching();
  }

  double elapsed() const { return now() - begin; }
  int song() const { return static_cast<int>(elapsed() / secondsOfASong); }
  // The first row in sight.
  int place() const {
    return static_cast<int>(elapsed() - song() * secondsOfASong) / 5 % (linesOfASong - rowsInSight);
  }
  bool isAway() const { return within(90, 6); }
  bool isClosed() const { return within(600, 5); }
  // Within the first `length` seconds of each `period`, but not of the first.
  bool within(double period, double length) const {
    return elapsed() >= period && std::fmod(elapsed(), period) < length;
  }

  void arrangePlayer() {
    bringToFront(isAway() ? "org.example.Editor" : "com.apple.Music");
    if (isClosed()) {
      platform.accessibility->applications.clear();
      shown.reset();
      return;
    }
    if (shown == std::pair(song(), place())) return;
    shown = std::pair(song(), place());
    auto title = fakeElement();
    title->identifier("Music.nowPlaying.title-Music.nowPlaying.subtitle")
        .description("Song " + std::to_string(song()) + " — River Band");
    std::vector<std::shared_ptr<FakeElement>> rows;
    for (int i = 0; i < rowsInSight; ++i) {
      rows.push_back(fakeElement());
      rows.back()
          ->role("AXButton")
          .title(lineOf(song(), place() + i))
          .frame({620.0, 110.0 + 80 * i, 360, 40});
    }
    auto lyrics = fakeElement();
    lyrics->role("AXScrollArea").description("Lyrics").frame({600, 100, 580, 650});
    lyrics->children({rows.begin(), rows.end()});
    auto window = fakeElement();
    window->role("AXWindow").frame({0, 30, 1200, 800}).children({title, lyrics});
    auto application = fakeElement();
    application->windows({window});
    platform.accessibility->applications[musicPid] = application;
  }

  void arrangeCompanion() {
    if (elapsed() - renewed < 1.5) return;
    renewed = elapsed();
    OverlaySnapshot snapshot{1,  now(), true, "Song " + std::to_string(song()), "River Band",
                             26, 0,     {}};
    for (int line = 0; line < linesOfASong; ++line) {
      snapshot.lines.edit().push_back({lineOf(song(), line), translationOf(song(), line)});
    }
    write(snapshotPath(), snapshot);
    writeSync();
    snapshotSong = song();
    if (++renewals % 40 == 0) writeCommand();
  }

  void step() {
    platform.clock->advance(tickInterval);
    arrangePlayer();
    arrangeCompanion();
    play("Song " + std::to_string(song()));
    tickAndRead();
    // What the fakes keep grows; what the overlay keeps must not.
    platform.log.clear();
    platform.scripting->requests.clear();
    platform.painter->measurements.clear();
    platform.painter->drawings.clear();
    platform.painter->radii.clear();
    platform.painter->translations.clear();
    output.str("");
  }

  void expectRight() const {
    if (isAway() || isClosed() || snapshotSong != song()) {
      EXPECT_FALSE(panelVisible());
      return;
    }
    EXPECT_TRUE(panelVisible());
    std::vector<std::string> texts;
    for (const Caption& caption : controller->canvas.captions()) texts.push_back(caption.text);
    std::vector<std::string> expected;
    for (int i = 0; i < rowsInSight; ++i) expected.push_back(translationOf(song(), place() + i));
    EXPECT_EQ(texts, expected);
    EXPECT_EQ(controller->statusMessage, "Following Music • 8 translated rows");
  }

  double begin = 0;
  std::optional<std::pair<int, int>> shown;
  double renewed = -10;
  int renewals = 0;
  int snapshotSong = -1;
};

TEST_F(LongDayTest, KeepsNothingAndIsRightAtEveryTick) {
  struct Held {
    std::size_t bytes;
    std::ptrdiff_t descriptors;
    std::size_t files;
  };
  const auto held = [this] {
    return Held{::mallinfo2().uordblks, faults::openDescriptors(), folder.names().size()};
  };
  // Two songs and a look at everything, after which nothing is there for the first time.
  while (elapsed() < 700) step();
  const Held before = held();
  std::size_t ticks = 0;
  while (elapsed() < secondsToFollow()) {
    step();
    ++ticks;
    expectRight();
    if (HasFailure()) FAIL() << "after " << elapsed() << " s";
  }
  const Held after = held();
  EXPECT_LT(after.bytes, before.bytes + 64 * 1024);
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_EQ(after.files, before.files);
  EXPECT_EQ(platform.app.terminations, 0);
  std::cout << ticks << " ticks; " << before.bytes / 1024 << " KiB in use before, "
            << after.bytes / 1024 << " after\n";
}

}  // namespace
}  // namespace vellora
