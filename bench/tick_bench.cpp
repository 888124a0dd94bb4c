#include <memory>
#include <sstream>
#include <string>

#include <benchmark/benchmark.h>

#include "controller/overlay_delegate.h"
#include "exchange/records/json.h"
#include "support/fake_platform.h"
#include "support/temporary_folder.h"

// A tick at which nothing has changed and no reading is begun, with a snapshot of 60 lines and an
// active sync request. Beside it: both files read and decoded, of which a steady tick saves most of
// the decoding.
namespace vellora {
namespace {

OverlaySnapshot snapshotOf(int lines, double now) {
  OverlaySnapshot snapshot{1, now, true, "Night Drive", "River Band", 32, 0, {}};
  auto& all = snapshot.lines.edit();
  for (int i = 0; i < lines; ++i) {
    const std::string number = std::to_string(i);
    all.push_back({"Line " + number + " of a song that is sung in one language",
                   "Zeile " + number + " eines Liedes, wie sie in der anderen klingt"});
  }
  return snapshot;
}

struct Exchange {
  explicit Exchange(double now) {
    writeText(folder / "snapshot.json", encode(snapshotOf(60, now)).value());
    writeText(folder / "sync.json", encode(SyncRequest{now}).value());
  }
  TemporaryFolder folder;
};

void tickOften(benchmark::State& state, OverlayDelegate& controller, Log* log) {
  controller.tick();
  const std::string message = controller.statusMessage;
  for (auto _ : state) {
    controller.tick();
    if (log) log->clear();
  }
  if (controller.statusMessage != message) state.SkipWithError("the world changed");
}

// Every seam answers at once: the tick's own work.
void steadyTickDuringAReading(benchmark::State& state) {
  FakePlatform platform;
  const Exchange exchange(platform.clock->now());
  std::ostringstream output;
  const auto controller =
      std::make_shared<OverlayDelegate>(exchange.folder / "snapshot.json", platform, output);
  platform.workspace->frontmost = std::make_shared<FakeRunningApplication>("com.apple.Music", 4711);
  tickOften(state, *controller, &platform.log);
  if (!controller->scanning) state.SkipWithError("no reading is in flight");
}

// The same with another program in front, so that the status line is looked after.
void steadyTickWithTheStatusLine(benchmark::State& state) {
  FakePlatform platform;
  const Exchange exchange(platform.clock->now());
  std::ostringstream output;
  const auto controller =
      std::make_shared<OverlayDelegate>(exchange.folder / "snapshot.json", platform, output);
  tickOften(state, *controller, &platform.log);
  if (controller->statusMessage.empty()) state.SkipWithError("no status line");
}

// The same on this system's own seams: trust and the frontmost window are really asked for. Without
// a display or a bus both answer no at once; scripts/session gives them. The clock is a fake, so
// that the snapshot stays fresh and nothing is published.
class StandingClockPlatform final : public Platform {
 public:
  Application& application() override { return real_->application(); }
  std::shared_ptr<const Clock> makeClock() override { return clock; }
  std::shared_ptr<Accessibility> makeAccessibility() override { return real_->makeAccessibility(); }
  std::unique_ptr<Workspace> makeWorkspace() override { return real_->makeWorkspace(); }
  std::unique_ptr<MusicScripting> makeMusicScripting() override {
    return std::make_unique<FakeMusicScripting>();
  }
  std::unique_ptr<CaptionPainter> makeCaptionPainter() override {
    return real_->makeCaptionPainter();
  }
  std::unique_ptr<NativeView> makeView() override { return real_->makeView(); }
  std::unique_ptr<Panel> makePanel() override { return real_->makePanel(); }
  std::unique_ptr<StatusItem> makeStatusItem() override { return nullptr; }

  std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();

 private:
  std::unique_ptr<Platform> real_ = makePlatform();
};

void steadyTickOnTheSystem(benchmark::State& state) {
  StandingClockPlatform platform;
  const Exchange exchange(platform.clock->now());
  std::ostringstream output;
  const auto controller =
      std::make_shared<OverlayDelegate>(exchange.folder / "snapshot.json", platform, output);
  controller->configurePanel();
  tickOften(state, *controller, nullptr);
  state.SetLabel(controller->statusMessage);
}

// What the main thread does about a snapshot of other lines than before: the tick that decodes it,
// and taking up the reading that follows. With as many lines as a file may hold.
void snapshotOfOtherLines(benchmark::State& state) {
  FakePlatform platform;
  const TemporaryFolder folder;
  std::ostringstream output;
  const auto controller =
      std::make_shared<OverlayDelegate>(folder / "snapshot.json", platform, output);
  platform.workspace->frontmost = std::make_shared<FakeRunningApplication>("com.apple.Music", 4711);
  auto title = fakeElement();
  title->identifier("Music.nowPlaying.title-Music.nowPlaying.subtitle")
      .description("Night Drive — River Band");
  auto row = fakeElement();
  row->role("AXButton")
      .title("Line 7 of a song that is sung in one language")
      .frame({620, 220, 360, 60});
  auto lyrics = fakeElement();
  lyrics->role("AXScrollArea").description("Lyrics").frame({600, 100, 580, 650}).children({row});
  auto window = fakeElement();
  window->role("AXWindow").frame({0, 30, 1200, 800}).children({title, lyrics});
  auto application = fakeElement();
  application->windows({window});
  platform.accessibility->applications[4711] = application;

  OverlaySnapshot snapshot = snapshotOf(static_cast<int>(state.range(0)), platform.clock->now());
  for (auto _ : state) {
    state.PauseTiming();
    snapshot.lines.edit().front().translation += "!";
    writeText(folder / "snapshot.json", encode(snapshot).value());
    state.ResumeTiming();
    controller->tick();
    state.PauseTiming();
    platform.app.runBackground();
    state.ResumeTiming();
    platform.app.runMain();
  }
  if (controller->canvas.captions().size() != 1) state.SkipWithError("no caption");
}

void readAndDecodeBothFiles(benchmark::State& state) {
  const FakeClock clock;
  const Exchange exchange(clock.now());
  for (auto _ : state) {
    const auto sync = decode<SyncRequest>(readText(exchange.folder / "sync.json"));
    const auto snapshot = decode<OverlaySnapshot>(readText(exchange.folder / "snapshot.json"));
    benchmark::DoNotOptimize(sync);
    benchmark::DoNotOptimize(snapshot);
  }
}

BENCHMARK(readAndDecodeBothFiles)->Unit(benchmark::kMicrosecond);
BENCHMARK(steadyTickDuringAReading)->Unit(benchmark::kMicrosecond);
BENCHMARK(steadyTickWithTheStatusLine)->Unit(benchmark::kMicrosecond);
BENCHMARK(snapshotOfOtherLines)->Arg(60)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(steadyTickOnTheSystem)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vellora
