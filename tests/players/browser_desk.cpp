#include "players/browser_desk.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <variant>

#include <unistd.h>

#include "witness/page_rows.h"

namespace vellora::e2e {

namespace {

// A browser may take long to start on a busy machine.
constexpr double patience = 60;

constexpr const char* firefoxPreferences =
    // Sound without a click.
    "user_pref('media.autoplay.default', 0);\n"
    // A player that is paused for a minute is one still.
    "user_pref('media.mediacontrol.stopcontrol.timer', false);\n"
    // No page before ours, no question above it, no message to anybody.
    "user_pref('browser.aboutwelcome.enabled', false);\n"
    "user_pref('browser.startup.homepage_override.mstone', 'ignore');\n"
    "user_pref('browser.shell.checkDefaultBrowser', false);\n"
    "user_pref('browser.tabs.warnOnClose', false);\n"
    "user_pref('datareporting.policy.dataSubmissionEnabled', false);\n"
    "user_pref('app.update.enabled', false);\n"
    "user_pref('app.normandy.enabled', false);\n"
    "user_pref('network.captive-portal-service.enabled', false);\n"
    "user_pref('network.connectivity-service.enabled', false);\n";

constexpr const char* firefoxWindow =
    R"({"chrome://browser/content/browser.xhtml": {"main-window": {)"
    R"("screenX": "40", "screenY": "40", "width": "1100", "height": "900", "sizemode": "normal"}}})";

bool inPath(const std::string& program) {
  const char* const path = std::getenv("PATH");
  std::istringstream folders(path != nullptr ? path : "");
  for (std::string each; std::getline(folders, each, ':');) {
    if (access((each + "/" + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

}  // namespace

void PrintTo(const Browser& browser, std::ostream* out) { *out << browser.name; }

void BrowserDesk::SetUp() {
  ASSERT_NO_FATAL_FAILURE(Desk::SetUp());
  ASSERT_TRUE(inPath(browser_.program))
      << browser_.program << " is not installed (./test installs it; ./test --quick leaves out the "
      << "tests with browsers)";
  outputOf({"xdotool", "mousemove", "32000", "32000"});
  // Beside the test's folder, of which a failed test keeps everything.
  profile_ = folder.string() + "-profile";
  pages_ = folder / "pages";
  for (const char* const source : {VELLORA_DEMO_PAGE, VELLORA_PAGES}) {
    std::filesystem::copy(source, pages_, std::filesystem::copy_options::recursive);
  }
  std::ofstream(pages_ / "songs.js") << outputOf({VELLORA_SONGS_FOR_PAGES, VELLORA_SONGS});
  auto songs = demo::loadSongs(VELLORA_SONGS);
  ASSERT_TRUE(std::holds_alternative<std::vector<demo::Song>>(songs));
  songs_ = std::get<std::vector<demo::Song>>(std::move(songs));
  environment["XDG_DATA_HOME"] = folder / "data";
}

void BrowserDesk::TearDown() {
  Desk::TearDown();
  std::error_code error;  // a process of the browser may still be at its end
  std::filesystem::remove_all(profile_, error);
}

std::vector<std::string> BrowserDesk::command() const {
  if (browser_.program == "chromium") {
    return {"chromium",
            "--no-sandbox",  // which root may not have, and
            "--test-type",   // of which nothing shall be said
            "--user-data-dir=" + profile_.string(),
            "--no-first-run",
            "--autoplay-policy=no-user-gesture-required",
            "--disable-background-networking",
            "--password-store=basic",
            "--window-position=40,40",
            "--window-size=1100,900"};
  }
  std::ofstream(profile_ / "user.js") << firefoxPreferences;
  std::ofstream(profile_ / "xulstore.json") << firefoxWindow;
  return {browser_.program, "--no-remote", "--profile", profile_};
}

void BrowserDesk::open(const std::vector<std::string>& pages) {
  std::filesystem::remove_all(profile_);
  std::filesystem::create_directory(profile_);
  std::vector<std::string> arguments = command();
  for (const std::string& page : pages) {
    arguments.push_back((browser_.asApplication ? "--app=file://" : "file://") +
                        (pages_ / page).string());
  }
  player = std::make_unique<Process>(std::move(arguments), folder / "browser.log", environment);
  ASSERT_TRUE(waitFor([&] { return inFront(); }, patience)) << "no window of the browser in front";
}

void BrowserDesk::follow(const std::string& page, std::size_t number) {
  ASSERT_NO_FATAL_FAILURE(open({page + "?song=" + std::to_string(number) + "&at=11.1&paused"}));
  keepSync();
  keepSnapshot(snapshotOf(number));
  startOverlay();
  // The witness looks only now: it must not be what wakes the browser.
  ASSERT_TRUE(waitFor([&] { return following(); }, patience))
      << "the overlay says: " << (status() ? status()->message : "nothing") << "\n"
      << whatIsSeen();
  // The page has played for a second until it rests.
  ASSERT_TRUE(waitFor(
      [&] {
        const auto track = nowPlaying();
        return track && !track->playing;
      },
      patience))
      << "the page does not come to rest";
  ASSERT_TRUE(waitFor([&] { return captionsRight(); }, patience)) << "no captions under the rows\n"
                                                                  << whatIsSeen();
}

void BrowserDesk::describe(const std::string& file, const std::string& text) const {
  const std::filesystem::path players = folder / "data" / "vellora" / "players";
  std::filesystem::create_directories(players);
  std::ofstream(players / file) << text;
}

OverlaySnapshot BrowserDesk::snapshotOf(std::size_t number) const {
  OverlaySnapshot snapshot;
  snapshot.enabled = true;
  snapshot.fontSize = 26;
  snapshot.musicTitle = song(number).title;
  snapshot.musicArtist = song(number).artist;
  for (const demo::SongLine& line : song(number).lines) {
    if (!line.translation) continue;
    snapshot.lines.edit().push_back(
        {line.text, std::to_string(snapshot.lines.size()) + " of the translation"});
  }
  return snapshot;
}

void BrowserDesk::bringToFront() const { outputOf({"wmctrl", "-x", "-a", windowClass()}); }

bool BrowserDesk::inFront() const {
  const std::string active = outputOf({"xdotool", "getactivewindow"});
  if (active.empty()) return false;
  const std::string id = active.substr(0, active.find('\n'));
  return outputOf({"xprop", "-id", id, "WM_CLASS"}).find("\"" + windowClass() + "\"") !=
         std::string::npos;
}

std::string BrowserDesk::whatIsSeen() const {
  const auto verdict = look();
  if (!verdict) return "the witness cannot see the rows, or they move";
  std::ostringstream said;
  for (const witness::RowVerdict& row : verdict->rows) {
    said << (row.right ? "right" : "WRONG") << (row.expected ? ", expected" : "")
         << (row.undecided ? ", undecided" : "") << ", y " << row.band.minY() << "–"
         << row.band.maxY() << ", " << row.seen.changed << " of " << row.seen.pixels
         << " pixels differ: " << row.text << "\n";
  }
  return said.str();
}

bool BrowserDesk::nothingOverWindow() const {
  const auto whole = screen->whole();
  const auto alone = screen->windowAlone(windowClass());
  return whole && alone &&
         witness::difference(*whole, *alone, alone->frame.insetBy(8, 8)).changed == 0;
}

std::optional<witness::SeenPlayer> BrowserDesk::seenPlayer() const {
  if (!player) return std::nullopt;
  witness::PageQuery query;
  query.process = static_cast<unsigned>(player->pid());
  query.unitsPerPoint = unitsPerPoint;
  return witness::readPage(query);
}

}  // namespace vellora::e2e
