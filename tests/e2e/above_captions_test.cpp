#include <algorithm>
#include <cstdlib>
#include <string>

#include "base/files.h"
#include "e2e/desk.h"
#include "exchange/exchange_folder.h"
#include "support/x_client.h"

namespace vellora::e2e {
namespace {

using witness::difference;
using witness::Picture;

constexpr std::uint32_t color = 0xff00ff;
constexpr const char* colorDigits = "ff00ff";

std::string digits(double number) { return std::to_string(static_cast<int>(number)); }

// Whether `area` of the picture has no other colour than that of the windows which these tests put
// in front.
bool onlyColor(const Picture& picture, const Rect& area, std::uint32_t wanted = color) {
  const Picture plain{picture.width, picture.height,
                      std::vector<std::uint32_t>(picture.pixels.size(), wanted)};
  return difference(picture, plain, area).changed == 0;
}

// What other programs put on the screen without asking the window manager lies over the captions:
// screen lockers above all. The programs are real ones; each shows one colour and nothing else.
// Built for three desktops: with a compositor, without, and without a window manager too.
class AboveTheCaptions : public Desk {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(Desk::SetUp());
    client = std::make_unique<XClient>(std::getenv("DISPLAY"));
  }

  // Captions stand over the paused player. Leaves the screen's pictures without and with them.
  void follow() {
    player = std::make_unique<Process>(std::vector<std::string>{VELLORA_DEMO_PLAYER, "--song", "1",
                                                                "--paused", "--position", "12"},
                                       folder / "player.log");
    ASSERT_TRUE(waitFor([&] { return seenPlayer() && !seenPlayer()->rows.empty(); }));
    if (client->numbers(client->root(), "_NET_SUPPORTING_WM_CHECK").empty()) pretendToManage();
    std::optional<Picture> last;
    ASSERT_TRUE(waitFor([&] {
      const auto seen = seenPlayer();
      const auto now = screen->whole();
      const bool still = seen && seen == shownPlayer && last && now && now->pixels == last->pixels;
      shownPlayer = seen;
      last = now;
      return still && !onlyColor(*now, seen->viewport,
                                 now->at(static_cast<int>(seen->viewport.midX()),
                                         static_cast<int>(seen->viewport.midY())));
    })) << "the player's picture does not come to rest";
    bare = *last;
    keepSync();
    keepSnapshot(snapshotOfPlayer());
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionUnder(2); })) << "no captions";
    ASSERT_NO_FATAL_FAILURE(passTicks(2));
    captioned = *screen->whole();
  }

  // Where there is no window manager somebody has to say what is in front.
  void pretendToManage() {
    ASSERT_TRUE(waitFor([&] {
      const auto window = client->findByClass("com.apple.Music");
      return window != XCB_WINDOW_NONE && client->isViewable(window);
    }));
    client->setWindows(client->root(), "_NET_ACTIVE_WINDOW",
                       {client->findByClass("com.apple.Music")});
  }

  std::vector<Rect> rowsInView() const {
    std::vector<Rect> rows;
    for (const witness::SeenRow& row : shownPlayer->rows) {
      if (shownPlayer->viewport.contains(row.frame)) rows.push_back(row.frame);
    }
    return rows;
  }
  // The band between the row and the next, as wide as a caption's beginning.
  Rect bandUnder(std::size_t index) const {
    const std::vector<Rect> rows = rowsInView();
    if (index + 1 >= rows.size()) return {};
    return {rows[index].minX(), rows[index].maxY(), 160,
            rows[index + 1].minY() - rows[index].maxY()};
  }
  bool captionUnder(std::size_t index) const {
    const auto now = screen->whole();
    return now && difference(*now, bare, bandUnder(index)).changed > 300;
  }
  bool captionsAsBefore() const {
    const auto now = screen->whole();
    return now && difference(*now, captioned, shownPlayer->viewport).changed == 0;
  }

  // A stale command is removed by the next tick: each that goes is a tick that was.
  void passTicks(int count) {
    for (int i = 0; i < count; ++i) {
      send(MusicCommand(now() - 30, MusicCommand::Action::next, ""));
      ASSERT_TRUE(waitFor([&] { return !fileExists(exchange / commandFileName); }));
    }
  }

  // Where a visible top-level window of that class stands; null when there is none.
  Rect popUp(const std::string& windowClass) const {
    for (const xcb_window_t window : client->topLevels()) {
      const std::string classes = client->text(window, "WM_CLASS");
      if (classes.find(windowClass) == std::string::npos || !client->isViewable(window)) continue;
      const Rect frame = client->frame(window);
      if (frame.height >= 20) return frame;
    }
    return Rect::null();
  }

  // `windowClass` comes, covers captions and is itself covered by none, however often the overlay
  // looks.
  Rect expectInFront(const std::string& windowClass) {
    Rect frame = Rect::null();
    EXPECT_TRUE(waitFor([&] {
      frame = popUp(windowClass);
      const auto now = screen->whole();
      return now && !frame.isNull() && onlyColor(*now, frame);
    })) << "nothing of one colour in front: "
        << windowClass;
    if (frame.isNull()) return frame;
    EXPECT_GT(difference(captioned, bare, frame).changed, 300U) << "not over a caption";
    expectItStaysInFront(frame);
    return frame;
  }
  void expectItStaysInFront(const Rect& frame) {
    for (int i = 0; i < 6; ++i) {
      ASSERT_NO_FATAL_FAILURE(passTicks(1));
      EXPECT_TRUE(onlyColor(*screen->whole(), frame)) << "tick " << i;
    }
  }

  // The one program in front; it lives until the failure's screenshot is taken.
  void start(std::vector<std::string> arguments) {
    const std::string log =
        folder / (std::filesystem::path(arguments[0]).filename().string() + ".log");
    front = std::make_unique<Process>(std::move(arguments), log);
  }
  void lockScreen() {
    start({"i3lock", "--nofork", "--no-unlock-indicator", "--color", colorDigits});
  }

  std::unique_ptr<XClient> client;
  std::optional<witness::SeenPlayer> shownPlayer;
  Picture bare;
  Picture captioned;
  std::unique_ptr<Process> front;
};

TEST_F(AboveTheCaptions, AScreenLockerHidesThem) {
  ASSERT_NO_FATAL_FAILURE(follow());
  lockScreen();
  expectInFront("i3lock");
  front->stop();
  EXPECT_TRUE(waitFor([&] { return captionsAsBefore(); })) << "captions did not come back";
  // And clicks go through them as before: on a caption of rows that lie higher than they are.
  ASSERT_TRUE(waitFor([&] { return nowPlaying().has_value(); }));
  const double before = nowPlaying()->position;
  OverlaySnapshot over = snapshotOfPlayer();
  over.verticalOffset = -40;
  keepSnapshot(over);
  const Rect row = rowsInView().at(3);
  ASSERT_TRUE(waitFor([&] {
    const auto now = screen->whole();
    return now && difference(*now, bare, row).changed > 500;
  })) << "no plate over the row";
  outputOf({"xdotool", "mousemove", digits(row.minX() + 40), digits(row.midY()), "click", "1"});
  EXPECT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->position > before + 1; }));
}

TEST_F(AboveTheCaptions, CaptionsShownWhileTheScreenIsLockedStayUnderTheLocker) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const OverlaySnapshot usual = snapshotOfPlayer();
  OverlaySnapshot other = usual;
  other.musicTitle = "A song that nobody plays";
  keepSnapshot(other);
  ASSERT_TRUE(waitFor([&] { return statusIs("Waiting for translations for this song"); }));
  lockScreen();
  const Rect frame = expectInFront("i3lock");
  for (int i = 0; i < 3; ++i) {
    keepSnapshot(usual);
    ASSERT_TRUE(waitFor([&] { return following(); }));
    expectItStaysInFront(frame);
    keepSnapshot(other);
    ASSERT_TRUE(waitFor([&] { return !following(); }));
  }
  keepSnapshot(usual);
  front->stop();
  EXPECT_TRUE(waitFor([&] { return captionsAsBefore(); })) << "captions did not come back";
}

TEST_F(AboveTheCaptions, AMenuLiesOverThem) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const Rect place = bandUnder(2);

  start({VELLORA_DESK_POPUP, "menu", digits(place.minX()), digits(place.minY()), colorDigits});
  expectInFront("desk_popup");
  front->stop();
  EXPECT_TRUE(waitFor([&] { return captionsAsBefore(); })) << "captions did not come back";
}

TEST_F(AboveTheCaptions, ATooltipLiesOverThem) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const Rect place = bandUnder(2);
  start({VELLORA_DESK_POPUP, "tooltip", digits(place.minX()), digits(place.minY() - 20),
         colorDigits});
  const Rect small{place.minX(), place.minY() - 20, 10, 10};
  ASSERT_TRUE(waitFor([&] {
    const auto now = screen->whole();
    return now && difference(*now, captioned, small).changed == 100;
  })) << "no window";
  // It comes once the pointer has moved and then rests.
  for (const int step : {0, 1, 2}) {
    outputOf({"xdotool", "mousemove", digits(place.minX() + 4 + step), digits(place.minY() - 16)});
  }
  expectInFront("desk_popup");
  front->stop();
  outputOf({"xdotool", "mousemove", "1279", "799"});  // the player lights up the row under it
  EXPECT_TRUE(waitFor([&] { return captionsAsBefore(); })) << "captions did not come back";
}

// A window manager raises what is clicked, also what is in front already.
TEST_F(AboveTheCaptions, QuickClicksOnThePlayerLeaveThemThere) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const Rect view = shownPlayer->viewport;  // above it is nothing that acts
  outputOf({"xdotool", "mousemove", digits(view.midX()), digits(view.minY() - 12), "click",
            "--repeat", "5", "--delay", "200", "1"});
  outputOf({"xdotool", "mousemove", "1279", "799"});
  ASSERT_NO_FATAL_FAILURE(passTicks(2));
  EXPECT_TRUE(waitFor([&] { return captionsAsBefore(); })) << "captions did not come back";
}

TEST_F(AboveTheCaptions, ANotificationLiesOverThem) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const Rect place = bandUnder(2);
  const std::filesystem::path settings = folder / "dunstrc";
  const std::string paint = std::string("\"#") + colorDigits + "\"\n";
  ASSERT_TRUE(writeFileAtomically(
      settings, "[global]\norigin = top-left\nwidth = 200\nheight = 100\noffset = " +
                    digits(place.minX()) + "x" + digits(place.minY()) +
                    "\nframe_width = 0\nidle_threshold = 0\n[urgency_normal]\nbackground = " +
                    paint + "foreground = " + paint + "timeout = 0\n"));
  start({"dunst", "-conf", settings});
  ASSERT_TRUE(waitFor([&] {
    return outputOf({"gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                     "--object-path", "/", "--method", "org.freedesktop.DBus.NameHasOwner",
                     "org.freedesktop.Notifications"})
               .find("true") != std::string::npos;
  })) << "no notification daemon";
  outputOf({"gdbus", "call", "--session", "--dest", "org.freedesktop.Notifications",
            "--object-path", "/org/freedesktop/Notifications", "--method",
            "org.freedesktop.Notifications.Notify", "test", "0", "", "A notification",
            "with some words in it", "[]", "{}", "0"});
  expectInFront("unst");
  front->stop();
  EXPECT_TRUE(waitFor([&] { return captionsAsBefore(); })) << "captions did not come back";
}

}  // namespace
}  // namespace vellora::e2e
