#include <cstring>

#include <xcb/xcb.h>

#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

// A settings manager as desktops have one, for the one setting that scales every GTK window. Goes
// with its connection.
class ScaleSetting {
 public:
  ScaleSetting() : connection_(xcb_connect(nullptr, nullptr), xcb_disconnect) {
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(c())).data;
    xcb_create_window(c(), XCB_COPY_FROM_PARENT, window_, screen->root, -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    set(1);
    xcb_set_selection_owner(c(), window_, atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
    xcb_flush(c());
  }
  void set(char scale) {
    // Byte order, serial, number of settings; then a whole number with its name and serial.
    char bytes[] =
        "\0\0\0\0\0\0\0\0\1\0\0\0"
        "\0\0\x17\0Gdk/WindowScalingFactor\0\0\0\0\0\0\0\0";
    bytes[4] = bytes[40] = ++serial_;
    bytes[44] = scale;
    const xcb_atom_t settings = atom("_XSETTINGS_SETTINGS");
    xcb_change_property(c(), XCB_PROP_MODE_REPLACE, window_, settings, settings, 8, 48, bytes);
    xcb_flush(c());
  }

 private:
  xcb_connection_t* c() const { return connection_.get(); }
  xcb_atom_t atom(const char* name) const {
    const auto cookie =
        xcb_intern_atom(c(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(c(), cookie, nullptr), std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }

  std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
  xcb_window_t window_ = xcb_generate_id(c());
  char serial_ = 0;
};

class WitnessOnTheDesk : public Desk {
 protected:
  void follow(const std::string& geometry) {
    ASSERT_NO_FATAL_FAILURE(
        startPlayer({"--song", "1", "--paused", "--position", "12", "--geometry", geometry}));
    keepSnapshot(snapshotOfPlayer());
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
  }
  // By the window manager, which lets a pager put a window anywhere.
  void movePlayer(int x, int y) {
    outputOf({"wmctrl", "-x", "-r", "com.apple.Music", "-e",
              "0," + std::to_string(x) + "," + std::to_string(y) + ",-1,-1"});
  }
};

TEST_F(WitnessOnTheDesk, CountsCaptionsBeyondTheScreenApart) {
  ASSERT_NO_FATAL_FAILURE(follow("1000x700"));
  const auto before = look();
  ASSERT_TRUE(before);
  ASSERT_EQ(before->beyondScreen, 0U);
  const struct { int x, y; } places[] = {{140, 400}, {140, -400}, {1180, 40}};
  for (const auto& place : places) {
    SCOPED_TRACE(testing::Message() << place.x << ", " << place.y);
    movePlayer(place.x, place.y);
    ASSERT_TRUE(waitFor([&] {
      const auto seen = seenPlayer();
      return seen && seen->window.minX() == place.x && seen->window.minY() == place.y;
    }));
    std::optional<witness::CaptionsVerdict> verdict;
    EXPECT_TRUE(waitFor([&] {
      verdict = look();
      return verdict && verdict->beyondScreen > 0 &&
             verdict->captions + verdict->beyondScreen == before->captions;
    })) << "captions "
        << (verdict ? verdict->captions : 0) << ", beyond the screen "
        << (verdict ? verdict->beyondScreen : 0);
  }
}

TEST_F(WitnessOnTheDesk, SeesCaptionsOverAPlayerOfScaleTwo) {
  environment["GDK_SCALE"] = "2";
  ASSERT_NO_FATAL_FAILURE(follow("620x380"));
  EXPECT_GE(look()->captions, 1U);
  dropSnapshot();
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
}

TEST_F(WitnessOnTheDesk, SeesCaptionsWhenTheDesktopsScaleChanges) {
  ScaleSetting scale;
  ASSERT_NO_FATAL_FAILURE(follow("600x360"));
  for (const char factor : {'\2', '\1'}) {
    scale.set(factor);
    EXPECT_TRUE(waitFor([&] {
      const auto seen = seenPlayer();
      const auto alone = screen->windowAlone("com.apple.Music");
      return seen && alone && witness::pixelsPerPoint(*seen, *alone) == factor && captionsRight();
    })) << "no captions at scale "
        << int(factor);
  }
}

}  // namespace
}  // namespace vellora::e2e
