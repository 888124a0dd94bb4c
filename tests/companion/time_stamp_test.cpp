#include "companion/song/time_stamp.h"

#include <gtest/gtest.h>

namespace vellora::companion {
namespace {

struct TimeCase {
  const char* text;
  std::optional<double> seconds;
};

TEST(CompanionTimes, AreReadAsPeopleWriteThem) {
  const TimeCase cases[] = {{"0", 0.0},
                            {"83.5", 83.5},
                            {"1:23", 83.0},
                            {"01:23.45", 83.45},
                            {"01:23,450", 83.45},
                            {"1:02:03.5", 3723.5},
                            {"90:00", 5400.0},
                            {"", std::nullopt},
                            {":", std::nullopt},
                            {"1:", std::nullopt},
                            {"1:60", std::nullopt},
                            {"1:2:3:4", std::nullopt},
                            {"-1", std::nullopt},
                            {"1:23x", std::nullopt},
                            {"1e3", std::nullopt},
                            {"1.2.3", std::nullopt},
                            {"999999:00", std::nullopt},
                            {"nan", std::nullopt}};
  for (const TimeCase& each : cases) EXPECT_EQ(parseTime(each.text), each.seconds) << each.text;
}

TEST(CompanionTimes, StampsHaveAtLeastMinutesAndSeconds) {
  const TimeCase cases[] = {
      {"00:00", 0.0},          {"01:02.3", 62.3},          {"01:02.34", 62.34},
      {"01:02.345", 62.345},   {"01:02:34", 62.34},        {"1:2", 62.0},
      {"01:00:02.50", 3602.5}, {"125:00.00", 7500.0},      {"12", std::nullopt},
      {"12.5", std::nullopt},  {"00:60.00", std::nullopt}, {"00:01:345", std::nullopt}};
  for (const TimeCase& each : cases) EXPECT_EQ(parseStamp(each.text), each.seconds) << each.text;
}

TEST(CompanionTimes, AreShownAsAClockShowsThem) {
  EXPECT_EQ(clockText(0), "0:00");
  EXPECT_EQ(clockText(83.99), "1:23");
  EXPECT_EQ(clockText(3723), "1:02:03");
  EXPECT_EQ(clockText(-5), "0:00");
  EXPECT_EQ(clockText(std::numeric_limits<double>::quiet_NaN()), "0:00");
  EXPECT_EQ(clockText(std::numeric_limits<double>::infinity()), "100:00:00");
}

TEST(CompanionTimes, StampsAreRoundedToHundredths) {
  EXPECT_EQ(stampText(83.456), "[01:23.46]");
  EXPECT_EQ(stampText(59.999), "[01:00.00]");
  EXPECT_EQ(stampText(7500), "[125:00.00]");
}

}  // namespace
}  // namespace vellora::companion
