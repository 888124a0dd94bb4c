#include "exchange/records/json.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/utf8.h"

namespace vellora {
namespace {

const std::string commandWithoutEnd = R"({"requestedAt":1,"action":"play","title":"t")";

TEST(JsonTest, SnapshotIsWrittenCompactlyInTheOrderOfItsFields) {
  const OverlaySnapshot snapshot{1,        1.5, true, "Ti/tle",
                                 "Artist", 32,  -2,   {{"a \"b\"", "c"}, {"d", "e\n"}}};
  EXPECT_EQ(encode(snapshot),
            R"({"version":1,"updatedAt":1.5,"enabled":true,"musicTitle":"Ti\/tle",)"
            R"("musicArtist":"Artist","fontSize":32,"verticalOffset":-2,)"
            R"("lines":[{"source":"a \"b\"","translation":"c"},)"
            R"({"source":"d","translation":"e\n"}]})");
}

TEST(JsonTest, SnapshotWithoutLinesIsWrittenWithAnEmptyArray) {
  const OverlaySnapshot snapshot{1, 0, false, "", "", 0, 0, {}};
  EXPECT_EQ(encode(snapshot),
            R"({"version":1,"updatedAt":0,"enabled":false,"musicTitle":"","musicArtist":"",)"
            R"("fontSize":0,"verticalOffset":0,"lines":[]})");
}

TEST(JsonTest, EveryFieldOfTheOtherRecordsIsWritten) {
  EXPECT_EQ(encode(NowPlayingTrack(1, "t", "a", "b")),
            R"({"version":1,"updatedAt":1,"title":"t","artist":"a","album":"b",)"
            R"("position":0,"playing":false})");
  EXPECT_EQ(encode(SyncRequest{12.25}), R"({"updatedAt":12.25})");
  EXPECT_EQ(encode(MusicCommand(3, MusicCommand::Action::playPause, "t")),
            R"({"requestedAt":3,"action":"playPause","title":"t","artist":"","position":0})");
  EXPECT_EQ(encode(OverlayStatus("Overlay stopped", true)),
            R"({"message":"Overlay stopped","stopped":true})");
  EXPECT_EQ(encode(OverlayLine{"s", "t"}), R"({"source":"s","translation":"t"})");
}

TEST(JsonTest, NumberThatIsNotFiniteFailsTheWholeEncoding) {
  for (const double value :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(encode(SyncRequest{value}), std::nullopt);
    EXPECT_EQ(encode(NowPlayingTrack(1, "t", "a", "b", value)), std::nullopt);
    EXPECT_EQ(encode(MusicCommand(value, MusicCommand::Action::play, "t")), std::nullopt);
    EXPECT_EQ(encode(OverlaySnapshot{1, 1, true, "", "", value, 0, {}}), std::nullopt);
  }
}

TEST(JsonTest, SnapshotOfVersion2DecodesAndOneOfVersionOneAndAHalfDoesNot) {
  const auto file = [](const std::string& version) {
    return R"({"version":)" + version +
           R"(,"updatedAt":100,"enabled":true,"musicTitle":"","musicArtist":"","fontSize":1,)"
           R"("verticalOffset":0,"lines":[]})";
  };
  const std::optional<OverlaySnapshot> second = decode<OverlaySnapshot>(file("2"));
  ASSERT_TRUE(second);
  EXPECT_EQ(second->version, 2);
  EXPECT_FALSE(second->isUsable(100));
  EXPECT_TRUE(decode<OverlaySnapshot>(file("1"))->isUsable(100));
  EXPECT_FALSE(decode<OverlaySnapshot>(file("1.5")));
}

TEST(JsonTest, TrackWithoutPositionAndPlayingDecodes) {
  const auto track = decode<NowPlayingTrack>(
      R"({"version":1,"updatedAt":7,"title":"t","artist":"a","album":"b"})");
  ASSERT_TRUE(track);
  EXPECT_TRUE(*track == NowPlayingTrack(7, "t", "a", "b", 0, false));
}

TEST(JsonTest, CommandWithoutArtistOrWithoutPositionFails) {
  EXPECT_TRUE(decode<MusicCommand>(commandWithoutEnd + R"(,"artist":"a","position":2})"));
  EXPECT_FALSE(decode<MusicCommand>(commandWithoutEnd + R"(,"position":2})"));
  EXPECT_FALSE(decode<MusicCommand>(commandWithoutEnd + R"(,"artist":"a"})"));
}

TEST(JsonTest, CommandWithAnUnknownActionFails) {
  const auto file = [](const std::string& action) {
    return R"({"requestedAt":1,"action":)" + action + R"(,"title":"","artist":"","position":0})";
  };
  EXPECT_EQ(decode<MusicCommand>(file("\"next\""))->action, MusicCommand::Action::next);
  for (const char* action : {"\"pause\"", "\"Play\"", "\"\"", "1", "null", "[\"play\"]"}) {
    EXPECT_FALSE(decode<MusicCommand>(file(action))) << action;
  }
}

TEST(JsonTest, FirstOfRepeatedKeysCounts) {
  EXPECT_EQ(decode<SyncRequest>(R"({"updatedAt":1,"updatedAt":2})")->updatedAt, 1);
  EXPECT_FALSE(decode<SyncRequest>(R"({"updatedAt":null,"updatedAt":2})"));
  const auto track = decode<NowPlayingTrack>(
      R"({"version":1,"updatedAt":7,"title":"t","artist":"a","album":"b","position":null,)"
      R"("position":3})");
  ASSERT_TRUE(track);
  EXPECT_EQ(track->position, 0);
}

TEST(JsonTest, OneBadLineFailsTheSnapshot) {
  const auto file = [](const std::string& line) {
    return R"({"version":1,"updatedAt":1,"enabled":true,"musicTitle":"","musicArtist":"",)"
           R"("fontSize":1,"verticalOffset":0,"lines":[{"source":"a","translation":"b"},)" +
           line + "]}";
  };
  EXPECT_EQ(
      decode<OverlaySnapshot>(file(R"({"translation":"d","source":"c","x":1})"))->lines.size(), 2U);
  EXPECT_FALSE(decode<OverlaySnapshot>(file(R"({"source":"c"})")));
  EXPECT_FALSE(decode<OverlaySnapshot>(file(R"({"source":"c","translation":null})")));
}

// Random records, with the numbers and characters that are hard to write among them.
class RandomRecords {
 public:
  double number() {
    while (true) {
      const double value = std::bit_cast<double>(engine_());
      if (std::isfinite(value))
        return engine_() % 3 == 0 ? std::floor(std::fmod(value, 1e7)) : value;
    }
  }
  std::int64_t integer() { return static_cast<std::int64_t>(engine_() >> (engine_() % 64)); }
  bool flag() { return engine_() % 2 == 0; }
  std::string text() {
    static constexpr char32_t limits[] = {0x20, 0x80, 0x800, 0xD800, 0x10000, 0x110000};
    std::string result;
    for (auto count = engine_() % 12; count > 0; --count) {
      const char32_t limit = limits[engine_() % std::size(limits)];
      const auto character = static_cast<char32_t>(engine_() % limit);
      if (character < 0xD800 || character > 0xDFFF) appendCharacter(result, character);
    }
    return result;
  }
  MusicCommand::Action action() { return static_cast<MusicCommand::Action>(engine_() % 5); }

 private:
  std::mt19937_64 engine_{20240607};
};

template <typename Record>
std::optional<Record> roundTrip(const Record& record) {
  const std::optional<std::string> json = encode(record);
  return json ? decode<Record>(*json) : std::nullopt;
}

TEST(JsonPropertyTest, DecodingWhatWasEncodedGivesAnEqualRecord) {
  RandomRecords random;
  for (int i = 0; i < 3000; ++i) {
    NowPlayingTrack track(random.number(), random.text(), random.text(), random.text(),
                          random.number(), random.flag());
    track.version = random.integer();
    const auto trackAgain = roundTrip(track);
    ASSERT_TRUE(trackAgain && *trackAgain == track) << *encode(track);

    const MusicCommand command(random.number(), random.action(), random.text(), random.text(),
                               random.number());
    const auto commandAgain = roundTrip(command);
    ASSERT_TRUE(commandAgain && *commandAgain == command) << *encode(command);

    const OverlayStatus status(random.text(), random.flag());
    const auto statusAgain = roundTrip(status);
    ASSERT_TRUE(statusAgain && statusAgain->message == status.message &&
                statusAgain->stopped == status.stopped);

    const SyncRequest request{random.number()};
    ASSERT_EQ(std::bit_cast<std::uint64_t>(roundTrip(request)->updatedAt),
              std::bit_cast<std::uint64_t>(request.updatedAt));

    OverlaySnapshot snapshot{random.integer(), random.number(), random.flag(),   random.text(),
                             random.text(),    random.number(), random.number(), {}};
    for (int line = i % 5; line > 0; --line)
      snapshot.lines.edit().push_back({random.text(), random.text()});
    const auto again = roundTrip(snapshot);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->version, snapshot.version);
    EXPECT_EQ(again->updatedAt, snapshot.updatedAt);
    EXPECT_EQ(again->enabled, snapshot.enabled);
    EXPECT_EQ(again->musicTitle, snapshot.musicTitle);
    EXPECT_EQ(again->musicArtist, snapshot.musicArtist);
    EXPECT_EQ(again->fontSize, snapshot.fontSize);
    EXPECT_EQ(again->verticalOffset, snapshot.verticalOffset);
    ASSERT_TRUE(again->lines == snapshot.lines);
  }
}

TEST(JsonPropertyTest, AFileCutShortOrDamagedNeverCrashesAndACutOneNeverDecodes) {
  const std::string file = *encode(OverlaySnapshot{
      1, 1.7e9, true, "T\u00E9\U0001F3B5", "A/B", 32, -0.5, {{"s", "t"}, {"\n", "\u2028"}}});
  for (std::size_t length = 0; length < file.size(); ++length) {
    EXPECT_FALSE(decode<OverlaySnapshot>(file.substr(0, length))) << length;
  }
  ASSERT_TRUE(decode<OverlaySnapshot>(file));
  for (std::size_t i = 0; i < file.size(); ++i) {
    for (const char c : std::string("\0\x1f\"\\{}[],:-+.eE0\x80\xff", 18)) {
      std::string damaged = file;
      damaged[i] = c;
      (void)decode<OverlaySnapshot>(damaged);
    }
  }
}

}  // namespace
}  // namespace vellora
