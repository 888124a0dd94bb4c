#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/glib/run_program.h"
#include "platform/linux/open/open_interface.h"

namespace vellora {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string url =
    "tessaly-overlay://x?snapshot=/Users/a%20b/%E6%96%87%2Fz/Vellora/snapshot.json&c=1+2#f";

// A folder of its own with the helper in it, on a session bus of its own.
class OpenTest : public ::testing::Test {
 protected:
  OpenTest() {
    char pattern[] = "/tmp/vellora-open-XXXXXX";
    folder = ::mkdtemp(pattern);
    fs::create_directory(folder / "beside");
    helper = folder / "beside" / "vellora-open";
    fs::copy_file(VELLORA_OPEN_PROGRAM, helper);
    g_setenv("VELLORA_STAND_IN_LOG", (folder / "log").c_str(), TRUE);
    g_setenv("XDG_RUNTIME_DIR", folder.c_str(), TRUE);
    path = g_getenv("PATH");
  }
  ~OpenTest() override {
    g_setenv("PATH", path.c_str(), TRUE);
    fs::remove_all(folder);
  }

  void installOverlay(const fs::path& place) const {
    fs::create_directories(place);
    fs::copy_file(VELLORA_STAND_IN_OVERLAY, place / "vellora");
  }

  // Starts an overlay and returns once it has its name on the bus.
  void startOverlay() {
    std::string program = VELLORA_STAND_IN_OVERLAY;
    char* arguments[] = {program.data(), nullptr};
    ASSERT_TRUE(g_spawn_async(nullptr, arguments, nullptr, G_SPAWN_DEFAULT, nullptr, nullptr,
                              nullptr, nullptr));
    const auto connection = bus.connect();
    ASSERT_TRUE(runLoopUntil([&] {
      const GVariantPtr reply(g_dbus_connection_call_sync(
          connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
          "NameHasOwner", g_variant_new("(s)", OpenInterface::busName), G_VARIANT_TYPE("(b)"),
          G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
      gboolean owned = FALSE;
      if (reply) g_variant_get(reply.get(), "(b)", &owned);
      return owned != FALSE;
    }));
  }

  std::vector<std::string> log() const {
    std::vector<std::string> lines;
    std::ifstream file(folder / "log");
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }
  // The overlay writes what it was given after it has answered.
  std::vector<std::string> logToItsEnd() const {
    EXPECT_TRUE(runLoopUntil([this] { return !log().empty() && log().back() == "end"; }));
    return log();
  }

  // Makes the handler's desktop file the one for the scheme, as an installation does.
  void registerScheme() {
    const fs::path applications = folder / "share" / "applications";
    fs::create_directories(applications);
    fs::create_directories(folder / "config");
    fs::copy_file(VELLORA_PACKAGING "/vellora-url-handler.desktop",
                  applications / "vellora-url-handler.desktop");
    g_setenv("XDG_DATA_HOME", (folder / "share").c_str(), TRUE);
    g_setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), TRUE);
    g_setenv("DISPLAY", ":no-display", TRUE);  // xdg-open wants the name of one, nobody connects
    g_unsetenv("WAYLAND_DISPLAY");
    g_unsetenv("XDG_CURRENT_DESKTOP");
    g_unsetenv("DESKTOP_SESSION");
    g_setenv("PATH", ((folder / "beside").string() + ":" + path).c_str(), TRUE);
    EXPECT_EQ(runProgram({"update-desktop-database", applications}).status, 0);
  }

  PrivateBus bus;
  fs::path folder;
  fs::path helper;
  std::string path;
};

TEST_F(OpenTest, HandsTheUrlUnchangedToTheRunningOverlay) {
  startOverlay();
  installOverlay(folder / "beside");
  const auto outcome = runProgram({helper, url});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(logToItsEnd(), ElementsAre("started", url, "end"));  // no second one was started
}

TEST_F(OpenTest, HandsOverSeveralUrlsAtOnceWithoutALookAtThem) {
  startOverlay();
  const auto outcome =
      runProgram({helper, "TESSALY-overlay:%zz", "x:", "mailto:文 ü", "a+b.c-1:/a/file"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_THAT(logToItsEnd(), ElementsAre("started", "TESSALY-overlay:%zz", "x:", "mailto:文 ü",
                                         "a+b.c-1:/a/file", "end"));
}

TEST_F(OpenTest, StartsTheOverlayBesideItWhereNoneRuns) {
  installOverlay(folder / "beside");
  const auto outcome = runProgram({helper, url});
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(logToItsEnd(), ElementsAre("started", url, "end"));
}

TEST_F(OpenTest, StartsTheOverlayInPathWhereNoneLiesBesideIt) {
  installOverlay(folder / "bin");
  g_setenv("PATH", ((folder / "bin").string() + ":" + path).c_str(), TRUE);
  EXPECT_EQ(runProgram({helper, url}).status, 0);
  EXPECT_THAT(logToItsEnd(), ElementsAre("started", url, "end"));
}

TEST_F(OpenTest, StartsNoneWhereItIsToldNotTo) {
  installOverlay(folder / "beside");
  const auto nobody = runProgram({helper, "--running", url});
  EXPECT_EQ(nobody.status, 1);
  EXPECT_EQ(nobody.errors, "vellora-open: no Vellora runs\n");
  EXPECT_THAT(log(), IsEmpty());
  startOverlay();
  EXPECT_EQ(runProgram({helper, "--running", url}).status, 0);
  EXPECT_THAT(logToItsEnd(), ElementsAre("started", url, "end"));
}

TEST_F(OpenTest, SaysThatTheOverlayCannotBeStarted) {
  g_setenv("PATH", (folder / "empty").c_str(), TRUE);
  const auto outcome = runProgram({helper, url});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("vellora-open: Vellora cannot be started: "));
}

TEST_F(OpenTest, GivesUpOnAnOverlayThatDoesNotAppear) {
  std::ofstream(folder / "beside" / "vellora") << "#!/bin/sh\n";
  fs::permissions(folder / "beside" / "vellora", fs::perms::owner_all);
  const auto started = g_get_monotonic_time();
  const auto outcome = runProgram({helper, url});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("did not appear on the session bus within 10 s"));
  EXPECT_LT(g_get_monotonic_time() - started, 15'000'000);
}

TEST_F(OpenTest, SaysThatTheOwnerOfTheNameRefused) {
  const auto other = bus.connect();
  const GVariantPtr owned(g_dbus_connection_call_sync(
      other.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", OpenInterface::busName, 4u), nullptr,
      G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
  ASSERT_TRUE(owned);
  const auto outcome = runProgram({helper, url});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("vellora-open: Vellora did not take the URL: "));
}

TEST_F(OpenTest, SaysThatThereIsNoSessionBus) {
  g_unsetenv("DBUS_SESSION_BUS_ADDRESS");
  const auto outcome = runProgram({helper, url});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors,
            "vellora-open: there is no session bus that answers, over which to reach Vellora\n");
}

TEST_F(OpenTest, SaysOfWhatHasNoSchemeThatItIsNoUrlAndHandsNothingOver) {
  installOverlay(folder / "beside");
  for (const std::string word :
       {"foo", "", "/a/file", "--snapshot", "1x:y", ":y", "文:y", "a b:y"}) {
    for (const auto& arguments : {std::vector<std::string>{helper, word}, {helper, url, word}}) {
      const auto outcome = runProgram(arguments);
      EXPECT_EQ(outcome.status, 2) << word;
      EXPECT_EQ(outcome.output, "") << word;
      EXPECT_EQ(outcome.errors,
                "vellora-open: \"" + word +
                    "\" is no URL: it has no scheme (usage: vellora-open [--running] URL...)\n");
    }
  }
  EXPECT_THAT(log(), IsEmpty());  // no overlay was started
}

TEST_F(OpenTest, WhatIsToldCannotSteerATerminal) {
  const auto outcome = runProgram({helper, "a\x1b[2J\n\u009b" + std::string(5000, 'x')});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.errors.find('\x1b'), std::string::npos);
  EXPECT_EQ(outcome.errors.find("\u009b"), std::string::npos);
  EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1);
  EXPECT_LT(outcome.errors.size(), 400U);
}

TEST_F(OpenTest, ExplainsItselfWithoutAUrl) {
  const auto nothing = runProgram({helper});
  EXPECT_EQ(nothing.status, 2);
  EXPECT_EQ(nothing.errors,
            "vellora-open: no URL is given (usage: vellora-open [--running] URL...)\n");
  const auto asked = runProgram({helper, "--help"});
  EXPECT_EQ(asked.status, 0);
  EXPECT_THAT(asked.output, HasSubstr("usage: vellora-open [--running] URL..."));
}

TEST_F(OpenTest, RefusesWhatIsNotUtf8) {
  const auto outcome = runProgram({helper, "tessaly-overlay://\xff"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.errors, HasSubstr("not valid UTF-8"));
}

TEST_F(OpenTest, GioOpenBringsTheUrlUnchanged) {
  registerScheme();
  installOverlay(folder / "beside");
  EXPECT_EQ(runProgram({"gio", "open", url}).status, 0);
  EXPECT_THAT(logToItsEnd(), ElementsAre("started", url, "end"));
}

TEST_F(OpenTest, XdgOpenBringsTheUrlUnchanged) {
  registerScheme();
  installOverlay(folder / "beside");
  EXPECT_EQ(runProgram({"xdg-open", url}).status, 0);
  EXPECT_THAT(logToItsEnd(), ElementsAre("started", url, "end"));
}

TEST(DesktopFilesTest, AreValid) {
  for (const char* name : {"/vellora.desktop", "/vellora-url-handler.desktop"}) {
    const auto outcome =
        runProgram({"desktop-file-validate", std::string(VELLORA_PACKAGING) + name});
    EXPECT_EQ(outcome.status, 0) << name;
    EXPECT_EQ(outcome.output + outcome.errors, "") << name;
  }
}

}  // namespace
}  // namespace vellora
