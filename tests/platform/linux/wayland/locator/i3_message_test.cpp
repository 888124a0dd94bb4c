#include "platform/linux/wayland/locator/i3_message.h"

#include <cstdint>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace vellora {
namespace {

std::string head(std::uint32_t length, std::uint32_t type) {
  std::string bytes = "i3-ipc";
  for (const std::uint32_t number : {length, type}) {
    char raw[4];
    std::memcpy(raw, &number, 4);
    bytes.append(raw, 4);
  }
  return bytes;
}

TEST(I3MessageTest, AMessageIsMagicLengthTypeAndPayload) {
  EXPECT_EQ(encodeI3Message(2, R"(["window"])"), head(10, 2) + R"(["window"])");
  EXPECT_EQ(encodeI3Message(4), head(0, 4));
}

TEST(I3MessageTest, MessagesAreReadWhereverTheirBytesAreCut) {
  const std::string bytes = head(2, 4) + "{}" + head(0, 0x80000003U) + head(3, 2) + "abc";
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    I3MessageReader reader;
    std::string met;
    for (const std::string& part : {bytes.substr(0, cut), bytes.substr(cut)}) {
      reader.take(part);
      while (const auto message = reader.next()) {
        met += std::to_string(message->type) + (message->isEvent() ? "!" : "") + message->payload +
               ";";
      }
    }
    EXPECT_EQ(met, "4{};2147483651!;2abc;") << cut;
    EXPECT_FALSE(reader.isBroken());
  }
}

TEST(I3MessageTest, WhatIsNoMagicBreaksTheConnectionAtItsFirstByte) {
  I3MessageReader reader;
  reader.take("i3-ixc");
  EXPECT_FALSE(reader.next().has_value());
  EXPECT_TRUE(reader.isBroken());
  reader.take(head(0, 4));
  EXPECT_FALSE(reader.next().has_value());
  I3MessageReader other;
  other.take("HTTP");
  EXPECT_FALSE(other.next().has_value());
  EXPECT_TRUE(other.isBroken());
}

TEST(I3MessageTest, ALengthBeyondAnyTreeBreaksTheConnectionBeforeItsPayload) {
  const auto longest = static_cast<std::uint32_t>(I3MessageReader::longestPayload);
  I3MessageReader fitting;
  fitting.take(head(longest, 4));
  EXPECT_FALSE(fitting.next().has_value());
  EXPECT_FALSE(fitting.isBroken());
  I3MessageReader reader;
  reader.take(head(longest + 1, 4));
  EXPECT_FALSE(reader.next().has_value());
  EXPECT_TRUE(reader.isBroken());
}

}  // namespace
}  // namespace vellora
