// The platform's workspace knows the players that the user's files describe.
#include <cstdlib>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support/temporary_folder.h"
#include "support/x_client.h"
#include "support/x_server.h"

namespace vellora {
namespace {

using std::string_literals::operator""s;

class PlatformPlayersTest : public testing::Test {
 protected:
  PlatformPlayersTest() {
    setenv("XDG_DATA_HOME", data.path().c_str(), 1);
    setenv("DISPLAY", server.display().c_str(), 1);
    std::filesystem::create_directories(data / "vellora/players");
  }

  TemporaryFolder data;
  XServer server;
};

TEST_F(PlatformPlayersTest, AWindowOfAClassInTheUsersFileIsThePlayers) {
  data.write("vellora/players/mine.player", "[Player]\nName=Mine\n[Window]\nClass=Jukebox\n");
  const auto platform = makePlatform();
  const auto workspace = platform->makeWorkspace();
  XClient client(server.display());
  const auto window = client.makeWindow({10, 10, 100, 100}, 0xffffff);
  client.setNumber(window, "_NET_WM_PID", 7);
  client.setText(window, "WM_CLASS", "a\0Jukebox\0"s);
  client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {window});
  const auto application = workspace->frontmostApplication();
  ASSERT_NE(application, nullptr);
  EXPECT_EQ(application->bundleIdentifier(), "com.apple.Music");
}

TEST_F(PlatformPlayersTest, MistakesInFilesAreToldInALineEach) {
  data.write("vellora/players/mine.player",
             "[Player]\nNom=Mine\n[Window]\nClass=\x1b[2JJukebox\nSlass=a\n");
  data.write("vellora/players/\xff.player", "[Player]\nName=Other\n[Window]\nClass=A\nKlass=a\n");
  testing::internal::CaptureStderr();
  const auto platform = makePlatform();
  const auto workspace = platform->makeWorkspace();
  const std::string told = testing::internal::GetCapturedStderr();
  const std::string file = (data / "vellora/players/mine.player").string();
  EXPECT_NE(told.find("Vellora: " + file + ":2: unknown key \"Nom\" in [Player]; "), told.npos)
      << told;
  EXPECT_NE(told.find("Vellora: " + file + ":5: unknown key \"Slass\" in [Window]; "), told.npos)
      << told;
  EXPECT_NE(told.find(".player:5: unknown key \"Klass\""), told.npos) << told;
  EXPECT_EQ(told.find('\x1b'), told.npos) << told;
  EXPECT_TRUE(told.ends_with('\n'));
}

}  // namespace
}  // namespace vellora
