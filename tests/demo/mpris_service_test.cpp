#include "player/mpris_service.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/glib/event_source.h"

namespace vellora::demo {
namespace {

constexpr const char* busName = "org.mpris.MediaPlayer2.vellora_demo_player";
constexpr const char* objectPath = "/org/mpris/MediaPlayer2";
constexpr const char* root = "org.mpris.MediaPlayer2";
constexpr const char* player = "org.mpris.MediaPlayer2.Player";
constexpr const char* trackList = "org.mpris.MediaPlayer2.TrackList";

struct TextFree {
  void operator()(gchar* text) const { g_free(text); }
};

struct ErrorFree {
  void operator()(GError* error) const { g_error_free(error); }
};

// A value as GVariant's text form prints it.
std::string textOf(GVariant* value) {
  const std::unique_ptr<gchar, TextFree> text(g_variant_print(value, FALSE));
  return text.get();
}

// The service and a client of its own connection, on a bus that lives as long as the suite.
class MprisServiceTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    bus.reset(g_test_dbus_new(G_TEST_DBUS_NONE));
    g_test_dbus_up(bus.get());
  }
  static void TearDownTestSuite() {
    g_test_dbus_stop(bus.get());
    bus.reset();
  }

  void SetUp() override {
    client.reset(g_dbus_connection_new_for_address_sync(
        g_test_dbus_get_bus_address(bus.get()),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    ASSERT_NE(client, nullptr);
    subscription = g_dbus_connection_signal_subscribe(
        client.get(), nullptr, nullptr, nullptr, objectPath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
        +[](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* name,
            GVariant* parameters, gpointer self) {
          static_cast<MprisServiceTest*>(self)->signals.push_back(std::string(name) + " " +
                                                                  textOf(parameters));
        },
        this, nullptr);
    service = std::make_unique<MprisService>(
        playback, MprisService::Actions{[this] { log += "raise "; }, [this] { log += "quit "; }});
    ASSERT_TRUE(iterateUntil([this] { return hasOwner(busName); }));
    signals.clear();
  }
  void TearDown() override {
    if (client) g_dbus_connection_signal_unsubscribe(client.get(), subscription);
    service.reset();
    iterateUntil([this] { return !hasOwner(busName); });
  }

  static bool iterateUntil(const std::function<bool()>& condition) {
    bool late = false;
    const auto limit = attachSource(g_timeout_source_new(60'000), [&late] { late = true; });
    while (!condition()) {
      if (late) return false;
      g_main_context_iteration(nullptr, TRUE);
    }
    return true;
  }

  bool hasOwner(const char* name) {
    const GVariantPtr reply(g_dbus_connection_call_sync(
        client.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "NameHasOwner", g_variant_new("(s)", name), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        nullptr));
    return reply && textOf(reply.get()) == "(true,)";
  }

  // The reply's text, or the error's D-Bus name.
  std::string call(const char* interface, const char* method, GVariant* parameters = nullptr) {
    std::string result;
    g_dbus_connection_call(
        client.get(), busName, objectPath, interface, method, parameters, nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        +[](GObject* source, GAsyncResult* done, gpointer target) {
          GError* failure = nullptr;
          const GVariantPtr reply(
              g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), done, &failure));
          const std::unique_ptr<GError, ErrorFree> error(failure);
          auto& text = *static_cast<std::string*>(target);
          if (reply) {
            text = textOf(reply.get());
          } else {
            const std::unique_ptr<gchar, TextFree> name(g_dbus_error_get_remote_error(error.get()));
            text = name ? name.get() : "no reply";
          }
        },
        &result);
    EXPECT_TRUE(iterateUntil([&] { return !result.empty(); })) << method;
    return result;
  }
  std::string property(const char* interface, const char* name) {
    return call("org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, name));
  }
  std::string set(const char* name, double value) {
    return call("org.freedesktop.DBus.Properties", "Set",
                g_variant_new("(ssv)", player, name, g_variant_new_double(value)));
  }

  static std::vector<Song> songs() {
    std::vector<Song> list(2);
    list[0] = Song{"a", "Première", "Traditional", "Album", "fr", "en", 60, {}};
    list[1] = Song{"b", "Second", "Somebody", "Other", "de", "en", 50.5, {}};
    return list;
  }

  static inline GObjectPtr<GTestDBus> bus;
  double now = 100;
  Playback playback{songs(), [this] { return now; }};
  GObjectPtr<GDBusConnection> client;
  guint subscription = 0;
  std::unique_ptr<MprisService> service;
  std::vector<std::string> signals;
  std::string log;
};

TEST_F(MprisServiceTest, SaysWhoItIs) {
  EXPECT_EQ(property(root, "DesktopEntry"), "(<'com.apple.Music'>,)");
  EXPECT_EQ(property(root, "Identity"), "(<'Music (stand-in)'>,)");
  EXPECT_EQ(property(root, "HasTrackList"), "(<true>,)");
  EXPECT_EQ(property(player, "CanSeek"), "(<true>,)");
  EXPECT_EQ(property(trackList, "CanEditTracks"), "(<false>,)");
}

TEST_F(MprisServiceTest, TellsStatusAndPosition) {
  EXPECT_EQ(property(player, "PlaybackStatus"), "(<'Paused'>,)");
  playback.play();
  now += 2.5;
  EXPECT_EQ(property(player, "PlaybackStatus"), "(<'Playing'>,)");
  EXPECT_EQ(property(player, "Position"), "(<int64 2500000>,)");
  playback.stop();
  EXPECT_EQ(property(player, "PlaybackStatus"), "(<'Stopped'>,)");
}

TEST_F(MprisServiceTest, TellsWhatPlays) {
  EXPECT_EQ(property(player, "Metadata"),
            "(<{'mpris:trackid': <objectpath '/org/vellora/demo/track/1'>, 'mpris:length': <int64 "
            "60000000>, 'xesam:title': <'Première'>, 'xesam:artist': <['Traditional']>, "
            "'xesam:album': <'Album'>}>,)");
}

TEST_F(MprisServiceTest, ListsItsTracks) {
  EXPECT_EQ(property(trackList, "Tracks"),
            "(<[objectpath '/org/vellora/demo/track/1', '/org/vellora/demo/track/2']>,)");
  const char* ids[] = {"/org/vellora/demo/track/2", "/none"};
  const std::string reply =
      call(trackList, "GetTracksMetadata", g_variant_new("(@ao)", g_variant_new_objv(ids, 2)));
  EXPECT_NE(reply.find("'xesam:title': <'Second'>"), std::string::npos) << reply;
  EXPECT_NE(reply.find("<int64 50500000>"), std::string::npos) << reply;
  EXPECT_EQ(reply.find("Première"), std::string::npos) << "only those asked for";
}

TEST_F(MprisServiceTest, GoToPlaysTheTrack) {
  EXPECT_EQ(call(trackList, "GoTo", g_variant_new("(o)", "/org/vellora/demo/track/2")), "()");
  EXPECT_EQ(playback.index(), 1U);
  EXPECT_EQ(playback.status(), Playback::Status::playing);
  EXPECT_EQ(call(trackList, "GoTo", g_variant_new("(o)", "/none")), "()");
  EXPECT_EQ(playback.index(), 1U);
}

TEST_F(MprisServiceTest, PlayerMethodsReachThePlayback) {
  EXPECT_EQ(call(player, "PlayPause"), "()");
  EXPECT_EQ(playback.status(), Playback::Status::playing);
  EXPECT_EQ(call(player, "Pause"), "()");
  EXPECT_EQ(playback.status(), Playback::Status::paused);
  EXPECT_EQ(call(player, "Play"), "()");
  EXPECT_EQ(playback.status(), Playback::Status::playing);
  EXPECT_EQ(call(player, "Next"), "()");
  EXPECT_EQ(playback.index(), 1U);
  EXPECT_EQ(call(player, "Previous"), "()");
  EXPECT_EQ(playback.index(), 0U);
  EXPECT_EQ(call(player, "Seek", g_variant_new("(x)", gint64{1500000})), "()");
  EXPECT_DOUBLE_EQ(playback.position(), 1.5);
  EXPECT_EQ(call(player, "Stop"), "()");
  EXPECT_EQ(playback.status(), Playback::Status::stopped);
}

TEST_F(MprisServiceTest, SetPositionCountsForTheCurrentTrackAlone) {
  const auto setPosition = [this](const char* track, gint64 position) {
    return call(player, "SetPosition", g_variant_new("(ox)", track, position));
  };
  EXPECT_EQ(setPosition("/org/vellora/demo/track/1", 9000000), "()");
  EXPECT_DOUBLE_EQ(playback.position(), 9);
  EXPECT_EQ(setPosition("/org/vellora/demo/track/2", 3000000), "()");
  EXPECT_EQ(setPosition("/org/vellora/demo/track/1", -1), "()");
  EXPECT_DOUBLE_EQ(playback.position(), 9);
  EXPECT_TRUE(iterateUntil([this] { return !signals.empty(); }));
  EXPECT_EQ(signals, (std::vector<std::string>{"Seeked (9000000,)"}));
}

TEST_F(MprisServiceTest, ChangesAreSignalled) {
  playback.goTo(1);
  ASSERT_TRUE(iterateUntil([this] { return !signals.empty(); }));
  EXPECT_TRUE(signals[0].starts_with("PropertiesChanged ('org.mpris.MediaPlayer2.Player', "));
  EXPECT_NE(signals[0].find("'xesam:title': <'Second'>"), std::string::npos);
  EXPECT_NE(signals[0].find("'PlaybackStatus': <'Playing'>"), std::string::npos);
  signals.clear();
  playback.pause();
  ASSERT_TRUE(iterateUntil([this] { return !signals.empty(); }));
  EXPECT_EQ(signals[0],
            "PropertiesChanged ('org.mpris.MediaPlayer2.Player', {'PlaybackStatus': <'Paused'>}, "
            "[])");
}

TEST_F(MprisServiceTest, RateAndVolumeCanBeSet) {
  EXPECT_EQ(set("Rate", 2), "()");
  EXPECT_EQ(playback.rate(), 2);
  EXPECT_EQ(set("Volume", 0.5), "()");
  EXPECT_EQ(playback.volume(), 0.5);
  playback.play();
  EXPECT_EQ(set("Rate", 0), "()");
  EXPECT_EQ(playback.status(), Playback::Status::paused);
}

TEST_F(MprisServiceTest, RaiseAndQuitReachTheWindow) {
  EXPECT_EQ(call(root, "Raise"), "()");
  EXPECT_EQ(call(root, "Quit"), "()");
  EXPECT_EQ(log, "raise quit ");
}

TEST_F(MprisServiceTest, WhatItCannotDoIsAnError) {
  EXPECT_EQ(call(player, "OpenUri", g_variant_new("(s)", "file:///x")),
            "org.freedesktop.DBus.Error.NotSupported");
  EXPECT_EQ(call(trackList, "RemoveTrack", g_variant_new("(o)", "/org/vellora/demo/track/1")),
            "org.freedesktop.DBus.Error.NotSupported");
}

}  // namespace
}  // namespace vellora::demo
