#include "player/options.h"

#include <gtest/gtest.h>

namespace vellora::demo {
namespace {

using Arguments = std::vector<std::string>;

std::string playerError(const Arguments& arguments) {
  const auto result = parsePlayerOptions(arguments, "/songs");
  const auto* error = std::get_if<std::string>(&result);
  return error != nullptr ? *error : "none";
}

TEST(PlayerOptionsTest, HaveDefaults) {
  const auto options = std::get<PlayerOptions>(parsePlayerOptions({}, "/songs"));
  EXPECT_EQ(options.library, "/songs");
  EXPECT_EQ(options.song, "1");
  EXPECT_EQ(options.position, 0);
  EXPECT_EQ(options.speed, 1);
  EXPECT_FALSE(options.paused);
  EXPECT_TRUE(options.lyrics);
  EXPECT_FALSE(options.help);
  EXPECT_EQ(options.geometry.width, 1000);
  EXPECT_EQ(options.geometry.height, 700);
  EXPECT_EQ(options.geometry.x, std::nullopt);
}

TEST(PlayerOptionsTest, TakeEveryValue) {
  const auto options = std::get<PlayerOptions>(
      parsePlayerOptions({"--song", "Au clair", "--position", "12.5", "--paused", "--speed", "2",
                          "--no-lyrics", "--geometry", "800x600+10+20", "--library", "/other"},
                         "/songs"));
  EXPECT_EQ(options.song, "Au clair");
  EXPECT_EQ(options.position, 12.5);
  EXPECT_EQ(options.speed, 2);
  EXPECT_TRUE(options.paused);
  EXPECT_FALSE(options.lyrics);
  EXPECT_EQ(options.geometry.width, 800);
  EXPECT_EQ(options.geometry.height, 600);
  EXPECT_EQ(options.geometry.x, 10);
  EXPECT_EQ(options.geometry.y, 20);
  EXPECT_EQ(options.library, "/other");
}

TEST(PlayerOptionsTest, RefuseWhatTheyDoNotKnow) {
  EXPECT_EQ(playerError({"--loud"}), "unknown option --loud");
  EXPECT_EQ(playerError({"--song"}), "--song needs a value");
  EXPECT_EQ(playerError({"--position", "-1"}), "\"-1\" is no value for --position");
  EXPECT_EQ(playerError({"--position", "inf"}), "\"inf\" is no value for --position");
  EXPECT_EQ(playerError({"--speed", "9"}), "\"9\" is no value for --speed");
  EXPECT_EQ(playerError({"--speed", "0"}), "\"0\" is no value for --speed");
}

TEST(PlayerOptionsTest, TakeAGeometryWithOrWithoutAPlace) {
  EXPECT_TRUE(parseGeometry("640x480"));
  EXPECT_TRUE(parseGeometry("640x480+0+0"));
  for (const char* wrong : {"", "640", "640x", "0x480", "640x480+1", "640x480+1+", "640x480+1+2x",
                            "-640x480", "640X480", "640x480+-1+2"}) {
    EXPECT_FALSE(parseGeometry(wrong)) << wrong;
  }
}

TEST(PlayerOptionsTest, HelpNeedsNothingElse) {
  EXPECT_TRUE(std::get<PlayerOptions>(parsePlayerOptions({"--help"}, "")).help);
}

}  // namespace
}  // namespace vellora::demo
