// Readings over a program's own bus: fewer hands between, the same results, and nothing that a
// program could do there that it could not do over the accessibility bus.
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/linux/accessibility/direct_link.h"
#include "platform/linux/accessibility/memory_fixture.h"

namespace vellora {
namespace {

using testing::ElementsAre;

std::string ownAddress(const FakeProgramProcess& program) {
  return "unix:abstract=vellora-own-bus-" + std::to_string(program.pid());
}

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator numbers("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(numbers), end(numbers)));
}

class AccessibilityDirectTest : public MemoryFixture {
 protected:
  AccessibilityDirectTest() { ownBus = OwnBus::open; }

  CallCounts& counts() { return player->counts(); }

  // Has the player read until it is asked directly.
  void followDirectly() {
    ASSERT_TRUE(eventually([&] {
      readTexts();
      return counts().direct > 1;  // the first only asks whether it answers
    }));
  }

  // Changes the object over the program's own bus, which needs no daemon; its signal needs one.
  void changeDirectly(std::size_t place, const std::string& name, const char* signal) {
    const BusPtr link = openDirectLink(ownAddress(*player), player->pid());
    ASSERT_TRUE(link);
    sd_bus_message* made = nullptr;
    ASSERT_GE(sd_bus_message_new_method_call(link.get(), &made, nullptr,
                                             "/org/a11y/atspi/accessible/root", "org.vellora.Test",
                                             "Change"),
              0);
    const BusMessagePtr call(made);
    object(place).name = name;
    ASSERT_GE(sd_bus_message_append(made, "tusssbsuat", std::uint64_t{place}, object(place).role,
                                    name.c_str(), "", "", 0, signal, 1U, 0),
              0);
    ASSERT_GE(sd_bus_call(link.get(), made, 0, nullptr, nullptr), 0);
  }

  // Three rows are read, and of what is asked nothing directly, however often that is done.
  void expectDetour() {
    for (int i = 0; i < 10; ++i) {
      EXPECT_THAT(readTexts(), ElementsAre("row 0", "row 1", "row 2"));
    }
    EXPECT_EQ(counts().direct, 0);
  }
};

TEST_F(AccessibilityDirectTest, WhatIsInAWindowIsAskedDirectlyAndItsStateOverTheBus) {
  start(program);
  followDirectly();
  for (int i = 0; i < 3; ++i) {
    const int all = counts().all;
    const int direct = counts().direct;
    readTexts();
    EXPECT_EQ(counts().all - all, 5);  // the window's state, its frame and those of three rows
    EXPECT_EQ(counts().direct - direct, 4);  // all but the state
  }
  EXPECT_EQ(counts().directStates, 0);
  EXPECT_EQ(counts().links, 1);
}

// Whoever looks for a fault with a monitor of the bus sees nothing of what goes past it.
TEST_F(AccessibilityDirectTest, NothingIsAskedDirectlyWhereTheUserDoesNotWantThat) {
  ::setenv("VELLORA_DIRECT_LINK", "off", 1);
  start(program);
  expectDetour();
  ::unsetenv("VELLORA_DIRECT_LINK");
}

// The answer to the first question comes behind the signals; one that came by another way would
// overtake those that wait at the daemon.
TEST_F(AccessibilityDirectTest, ASignalThatIsStillUnderWayIsAwaited) {
  start(program);
  followDirectly();
  for (int i = 0; i < 5; ++i) {
    const std::string text = "text " + std::to_string(i);
    bus.stop();
    changeDirectly(rows[1], text, nameChanged);
    std::thread daemon([this] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      bus.resume();
    });
    const auto layout = read(patient);
    daemon.join();
    ASSERT_TRUE(layout.has_value());
    EXPECT_THAT(texts(*layout), ElementsAre("row 0", text, "row 2"));
  }
}

// What was read and then changed within one reading is forgotten by the next one.
TEST_F(AccessibilityDirectTest, AChangeAfterItsAnswerIsSeenByTheNextReading) {
  start(program);
  followDirectly();
  for (int i = 0; i < 20; ++i) {
    change(
        rows[0], [&](FakeAccessible& row) { row.name = std::to_string(i); }, nameChanged);
    std::thread changer([&] { changeDirectly(rows[1], "text " + std::to_string(i), nameChanged); });
    read(patient);
    changer.join();
    EXPECT_THAT(readTexts(), ElementsAre(std::to_string(i), "text " + std::to_string(i), "row 2"));
  }
}

TEST_F(AccessibilityDirectTest, OnlyASocketOfThisMachineIsConnectedTo) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("vellora-direct-" + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  const std::string marker = (folder / "marker").string();
  const std::string tooLong = "unix:path=/" + std::string(200, 'x');
  for (const std::string& address :
       {std::string(), std::string("nonsense"), std::string("unix:"), std::string("unix:path="),
        std::string("unix:path"), std::string("unix:path=%"), std::string("unix:path=/%zz"),
        std::string("unix:path=/a%00b"), std::string("unix:path=/nonexistent/bus"),
        std::string("unix:path=/,abstract=x"), std::string("unix:dir=/tmp"), tooLong,
        std::string("tcp:host=127.0.0.1,port=1"), "unixexec:path=/usr/bin/touch,argv1=" + marker,
        "unix:path=/nonexistent;unixexec:path=/usr/bin/touch,argv1=" + marker,
        "unix:path=" + folder.string()}) {
    SCOPED_TRACE(address);
    EXPECT_EQ(openDirectLink(address, getpid()), nullptr);
    program.ownAddress = address;
    start(program);
    expectDetour();
  }
  EXPECT_FALSE(std::filesystem::exists(marker));
  std::filesystem::remove_all(folder);
}

// As an address from a container can be: the same name out here is another program's.
TEST_F(AccessibilityDirectTest, ASocketOfAnotherProcessIsSentNothing) {
  const std::string name = "vellora-other-" + std::to_string(getpid());
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  std::memcpy(place.sun_path + 1, name.data(), name.size());
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&place), size), 0);
  ASSERT_EQ(listen(listener, 8), 0);
  program.ownAddress = "unix:abstract=" + name;
  start(program);
  expectDetour();
  const int taken = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
  ASSERT_GE(taken, 0);  // it was tried
  char byte = 0;
  EXPECT_EQ(::read(taken, &byte, 1), 0);  // and given up without a word
  close(taken);
  close(listener);
}

TEST_F(AccessibilityDirectTest, AnAddressMayBeEscapedAndHaveAnIdentifier) {
  start(program);
  const std::string pid = std::to_string(player->pid());
  EXPECT_NE(
      openDirectLink(ownAddress(*player) + ",guid=00112233445566778899aabbccddeeff", player->pid()),
      nullptr);
  EXPECT_NE(openDirectLink("unix:abstract=vellora%2down%2Dbus-" + pid, player->pid()), nullptr);
  EXPECT_EQ(openDirectLink(ownAddress(*player), getpid()), nullptr);
  EXPECT_EQ(openDirectLink(ownAddress(*player), 0), nullptr);
}

TEST_F(AccessibilityDirectTest, AProgramWhoseOwnBusDoesNotAnswerIsReadOverTheOther) {
  ownBus = OwnBus::mute;
  start(program);
  EXPECT_LT(seconds([&] { expectDetour(); }), hanging);
}

TEST_F(AccessibilityDirectTest, AnOwnBusThatEndsOrBabblesIsGivenUp) {
  for (const OwnBus kind : {OwnBus::ends, OwnBus::babbles}) {
    ownBus = kind;
    start(program);
    followDirectly();
    const std::size_t descriptors = openDescriptors();
    counts().ownBusIsOver = true;
    EXPECT_TRUE(eventually([&] {
      readTexts();
      return openDescriptors() == descriptors - 1;
    }));
    const int direct = counts().direct;
    change(
        rows[1], [](FakeAccessible& row) { row.name = "other"; }, nameChanged);
    EXPECT_THAT(readTexts(), ElementsAre("row 0", "other", "row 2"));
    EXPECT_EQ(counts().direct, direct);
    object(rows[1]).name = "row 1";
  }
}

// Nobody would see captions again if the program counted as silent for it.
TEST_F(AccessibilityDirectTest, AnOwnBusThatHangsHoldsUpOneReading) {
  ownBus = OwnBus::hangs;
  start(program);
  followDirectly();
  counts().ownBusIsOver = true;
  EXPECT_LT(seconds([&] { read(); }), hanging);
  const int direct = counts().direct;
  for (int i = 0; i < 5; ++i) EXPECT_THAT(readTexts(), ElementsAre("row 0", "row 1", "row 2"));
  EXPECT_EQ(counts().direct, direct);
  counts().ownBusIsOver = false;
  EXPECT_TRUE(eventually([&] {
    readTexts();
    return counts().direct > direct + 10;
  }));
  EXPECT_EQ(counts().links, 1);
}

TEST_F(AccessibilityDirectTest, APlayerThatHangsIsAskedOnceAndThenDirectlyAgain) {
  start(program);
  followDirectly();
  player->process().stop();
  const int before = counts().all;
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(read().has_value());
  wake();
  EXPECT_EQ(counts().all, before + 1);
  const int direct = counts().direct;
  readTexts();
  EXPECT_EQ(counts().direct, direct + 4);
  EXPECT_EQ(counts().links, 1);
}

TEST_F(AccessibilityDirectTest, APlayerThatStopsAmongDirectQuestionsIsReadWhenItGoesOn) {
  for (const int more : {1, 2, 3, 4}) {
    start(program);
    followDirectly();
    const int asked = counts().all;
    program.stopsAfter = asked + more;
    start(program);
    EXPECT_TRUE(eventually([&] { return read().has_value() || counts().all > asked + more; }));
    eventually([&] { return !read().has_value(); });
    wake();
    program.stopsAfter.reset();
    EXPECT_THAT(readTexts(), ElementsAre("row 0", "row 1", "row 2"));
  }
}

TEST_F(AccessibilityDirectTest, APlayerThatDiesIsGoneAtOnceAndItsLinkClosed) {
  const std::size_t before = openDescriptors();
  for (int i = 0; i < 5; ++i) {
    start(program);
    followDirectly();
    player->process().kill();
    EXPECT_LT(seconds([&] { EXPECT_FALSE(read(patient).has_value()); }), hanging);
  }
  accessibility.reset();
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(AccessibilityDirectTest, ManyReadingsHaveOneLinkAndTheRestedConnectionsLinkIsClosed) {
  accessibility = makeLinuxAccessibility(std::chrono::milliseconds(1));  // finds it each time
  const std::size_t before = openDescriptors();
  start(program);
  followDirectly();
  const std::size_t following = openDescriptors();
  for (int i = 0; i < 50; ++i) readTexts();
  EXPECT_EQ(openDescriptors(), following);
  EXPECT_EQ(counts().links, 1);
  accessibility.reset();
  EXPECT_EQ(openDescriptors(), before);
}

// A row of another program has the same path there as one of the player's own has here.
TEST_F(AccessibilityDirectTest, OfAnotherProgramsObjectsNothingIsAskedOverTheLink) {
  FakeProgram foreign = program;
  foreign.objects[rows[0]].name = "foreign";
  FakeProgramProcess other(bus, foreign);
  object(box).busOfFirstChild = other.busName();
  start(program);
  followDirectly();
  for (int i = 0; i < 3; ++i) EXPECT_THAT(readTexts(), ElementsAre("foreign", "row 1", "row 2"));
}

}  // namespace
}  // namespace vellora
