#include "e2e/desk.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <unistd.h>

#include "base/files.h"
#include "exchange/records/json.h"

namespace vellora::e2e {

namespace {

constexpr const char* application = "com.apple.Music";

// How many times as long as usual programs may take: scripts/sanitized_e2e sets it.
double slowness() {
  const char* const given = std::getenv("VELLORA_SLOWNESS");
  return given != nullptr ? std::max(std::strtod(given, nullptr), 1.0) : 1;
}

}  // namespace

double Desk::now() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

void Desk::SetUp() {
  ASSERT_NE(std::getenv("VELLORA_SESSION_PIDS"), nullptr)
      << "run this through scripts/session, which gives it a desktop of its own";
  std::string pattern = "/tmp/vellora-e2e-XXXXXX";
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  folder = pattern;
  environment["VELLORA_PLAYER_PATIENCE"] = "10";  // a busy machine's player answers late
  std::filesystem::create_directory(folder / "Vellora");
  writtenFiles = std::make_unique<WrittenFiles>(folder / "written");
  useExchange(folder / "Vellora");
  screen = openScreen();
  ASSERT_NE(screen, nullptr) << "no display";
}

std::unique_ptr<witness::Screen> Desk::openScreen() {
  outputOf({"xdotool", "mousemove", "1279", "799"});
  return witness::openXScreen();
}

void Desk::TearDown() {
  if (writtenFiles) checkWrittenFiles();
  if (HasFailure()) {
    const testing::TestInfo* const info = testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path left = std::filesystem::path(VELLORA_TEST_OUTPUT) / info->name();
    std::error_code error;
    std::filesystem::create_directories(left, error);
    if (screen) {
      if (const auto picture = screen->whole()) picture->writePng(left / "screenshot.png");
    }
    std::filesystem::copy(folder, left,
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing,
                          error);
    std::cout << "left in " << left << "\n";
  }
  if (overlay) overlay->stop();
  if (player) player->stop();
  std::filesystem::remove_all(folder);
}

void Desk::useExchange(const std::filesystem::path& other) {
  exchange = other;
  writtenFiles->watch(exchange);
}

void Desk::checkWrittenFiles() {
  writtenFiles->wait(0);
  if (writtenFiles->count() == 0) return;
  const std::filesystem::path log = folder / "schemas.log";
  Process check({VELLORA_PYTHON, VELLORA_CHECK_EXCHANGE, folder / "written"}, log);
  EXPECT_TRUE(waitFor([&] { return !check.running(); }));
  std::ostringstream said;
  said << std::ifstream(log).rdbuf();
  EXPECT_EQ(check.exitStatus(), 0) << "files that do not satisfy docs/schema:\n" << said.str();
  std::cout << said.str();
}

void Desk::startPlayer(std::vector<std::string> options) {
  options.insert(options.begin(), VELLORA_DEMO_PLAYER);
  player = std::make_unique<Process>(std::move(options), folder / "player.log", environment);
  ASSERT_TRUE(waitFor([&] { return seenPlayer() && !seenPlayer()->rows.empty(); }))
      << "the player's rows did not come onto the accessibility bus";
  ASSERT_TRUE(waitFor([&] { return screen->windowAlone(windowClass()).has_value(); }))
      << "the player's window did not come onto the screen";
}

void Desk::startOverlay(std::vector<std::string> options) {
  if (options.empty()) options = {"--snapshot", exchange / "snapshot.json"};
  options.insert(options.begin(), VELLORA_PROGRAM);
  overlay = std::make_unique<Process>(std::move(options), folder / "overlay.log", environment);
}

bool Desk::waitFor(const std::function<bool()>& condition, double seconds) {
  const double deadline = now() + seconds * slowness();
  while (true) {
    renew();
    if (condition()) return true;
    if (now() >= deadline) return false;
    writtenFiles->wait(15);
  }
}

void Desk::renew() {
  if (now() - lastRenewal_ < 0.5) return;
  lastRenewal_ = now();
  if (kept_) {
    kept_->updatedAt = now() + clockAhead;
    ASSERT_TRUE(writeFileAtomically(exchange / "snapshot.json", *encode(*kept_)));
  }
  if (syncing_) {
    ASSERT_TRUE(writeFileAtomically(exchange / syncRequestFileName,
                                    *encode(SyncRequest{now() + clockAhead})));
  }
}

void Desk::keepSnapshot(OverlaySnapshot snapshot) {
  kept_ = std::move(snapshot);
  lastRenewal_ = 0;
  renew();
}

void Desk::keepSync() {
  syncing_ = true;
  lastRenewal_ = 0;
  renew();
}

void Desk::dropSnapshot() {
  kept_.reset();
  removeFile(exchange / "snapshot.json");
}

void Desk::dropSync() {
  syncing_ = false;
  removeFile(exchange / syncRequestFileName);
}

void Desk::send(const MusicCommand& command) const {
  ASSERT_TRUE(writeFileAtomically(exchange / commandFileName, *encode(command)));
}

OverlaySnapshot Desk::snapshotOfPlayer() const {
  OverlaySnapshot snapshot;
  snapshot.enabled = true;
  snapshot.fontSize = 26;
  const std::optional<witness::SeenPlayer> seen = seenPlayer();
  if (!seen) {
    ADD_FAILURE() << "the player is not on the accessibility bus";
    return snapshot;
  }
  const std::string separator = " — ";
  const std::size_t dash = seen->title.find(separator);
  snapshot.musicTitle = seen->title.substr(0, dash);
  snapshot.musicArtist =
      dash == std::string::npos ? "" : seen->title.substr(dash + separator.size());
  for (const witness::SeenRow& row : seen->rows) {
    snapshot.lines.edit().push_back(
        {row.text, std::to_string(snapshot.lines.size()) + " of the translation"});
  }
  return snapshot;
}

void Desk::scrollThePlayer() {
  keepSync();
  send(MusicCommand(now(), MusicCommand::Action::seek, "", "", 30));
  ASSERT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->position > 29; }));
  send(MusicCommand(now(), MusicCommand::Action::playPause, ""));
  ASSERT_TRUE(waitFor([&] { return nowPlaying() && !nowPlaying()->playing; }));
}

std::optional<Rect> Desk::putAPlateOverARow() {
  OverlaySnapshot over = snapshotOfPlayer();
  over.verticalOffset = -40;
  keepSnapshot(std::move(over));
  const auto seen = seenPlayer();
  if (!seen) return std::nullopt;
  const auto row = std::ranges::find_if(seen->rows, [&](const witness::SeenRow& each) {
    return seen->viewport.contains(each.frame) && each.frame.minY() > seen->viewport.midY();
  });
  if (row == seen->rows.end()) return std::nullopt;
  const bool isThere = waitFor([&] {
    const auto whole = screen->whole();
    const auto alone = screen->windowAlone(windowClass());
    return whole && alone && witness::difference(*whole, *alone, row->frame).changed > 500;
  });
  return isThere ? std::optional(row->frame) : std::nullopt;
}

void Desk::keepSnapshotOfAnotherSong() {
  OverlaySnapshot other = snapshotOfPlayer();
  other.musicTitle = "A song that nobody plays";
  keepSnapshot(std::move(other));
}

std::optional<OverlaySnapshot> Desk::snapshot() const {
  const auto bytes = readWholeFile(exchange / "snapshot.json");
  return bytes ? decode<OverlaySnapshot>(*bytes) : std::nullopt;
}

std::optional<OverlayStatus> Desk::status() const {
  const auto bytes = readWholeFile(exchange / statusFileName);
  return bytes ? decode<OverlayStatus>(*bytes) : std::nullopt;
}

std::optional<NowPlayingTrack> Desk::nowPlaying() const {
  const auto bytes = readWholeFile(exchange / nowPlayingFileName);
  return bytes ? decode<NowPlayingTrack>(*bytes) : std::nullopt;
}

bool Desk::statusIs(const std::string& message) const {
  const auto current = status();
  return current && current->message == message;
}

bool Desk::following() const {
  const auto current = status();
  return current && current->message.starts_with("Following Music • ");
}

std::optional<witness::SeenPlayer> Desk::seenPlayer() const {
  return witness::readPlayer(application);
}

std::string Desk::windowClass() const { return application; }

std::optional<witness::CaptionsVerdict> Desk::look() const {
  const auto before = seenPlayer();
  const auto whole = screen->whole();
  const auto alone = screen->windowAlone(windowClass());
  const auto after = seenPlayer();
  const auto given = snapshot();
  if (!given || !before || !whole || !alone || !after || *before != *after) return std::nullopt;
  return witness::judgeCaptions(*before, *given, *whole, *alone);
}

bool Desk::captionsRight() const {
  const auto verdict = look();
  return verdict && verdict->right;
}

bool Desk::nothingOverPlayer() const {
  const auto before = seenPlayer();
  const auto whole = screen->whole();
  const auto alone = screen->windowAlone(windowClass());
  if (!before || !whole || !alone) return false;
  const Rect viewport = witness::scaled(before->viewport, witness::pixelsPerPoint(*before, *alone));
  return witness::difference(*whole, *alone, viewport).changed == 0;
}

}  // namespace vellora::e2e
