// The client against a server that misbehaves in every way that is known of servers.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <poll.h>

#include "companion/service/fetch.h"
#include "companion/service/lyrics_server.h"

namespace {

std::atomic<int> slowLookUps = 0;

}  // namespace

// The system's own way of looking up names, but for two: one that nobody knows, and one that keeps
// the caller waiting.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                           addrinfo** result) {
  const std::string asked = name == nullptr ? "" : name;
  if (asked == "nobody.invalid") return EAI_NONAME;
  if (asked == "slow.invalid") {
    ++slowLookUps;
    poll(nullptr, 0, 10'000);
    return EAI_AGAIN;
  }
  using LookUp = decltype(&getaddrinfo);
  static const auto system = reinterpret_cast<LookUp>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return system(name, service, hints, result);
}

namespace vellora::companion {
namespace {

using Outcome = Fetched::Outcome;
using std::chrono::steady_clock;

constexpr const char* search = "/api/search?track_name=a&artist_name=b";

class Fetching : public testing::Test {
 protected:
  // Until it is over, 30 seconds at most.
  std::optional<Fetched> finish() {
    for (int i = 0; i < 3000; ++i) {
      if (auto fetched = fetch->step()) return fetched;
      poll(nullptr, 0, 10);
    }
    return std::nullopt;
  }
  Fetched get(const std::string& url) {
    fetch->start(url);
    const auto fetched = finish();
    EXPECT_TRUE(fetched) << url << " never ends";
    return fetched.value_or(Fetched());
  }
  void limit(FetchLimits limits) {
    fetch = makeCurlFetch("Tests/1 (https://tests.invalid)", limits);
  }

  LyricsServer server;
  std::unique_ptr<Fetch> fetch = makeCurlFetch("Tests/1 (https://tests.invalid)");
};

TEST_F(Fetching, AnAnswerComesWithItsStatus) {
  const Fetched found = get(server.base() + search);
  EXPECT_EQ(found.outcome, Outcome::answered);
  EXPECT_EQ(found.status, 200);
  EXPECT_EQ(found.body, "[]");
  EXPECT_EQ(get(server.base("missing") + search).status, 404);
  EXPECT_EQ(get(server.base("failing") + search).status, 500);
}

TEST_F(Fetching, TheServerLearnsWhoAsksAndNothingElse) {
  get(server.base() + search);
  const std::string request = server.requests();
  EXPECT_NE(request.find("\"agent\": \"Tests/1 (https://tests.invalid)\""), request.npos);
  EXPECT_NE(request.find("\"headers\": [\"accept\", \"host\", \"user-agent\"]"), request.npos)
      << request;
}

TEST_F(Fetching, ACookieIsNotGivenBack) {
  get(server.base("cookie") + search);
  get(server.base("cookie") + search);
  EXPECT_EQ(server.requestCount(), 2U);
  EXPECT_EQ(server.requests().find("cookie\","), std::string::npos) << server.requests();
}

TEST_F(Fetching, ARequestToBeLeftAloneIsPassedOn) {
  const Fetched busy = get(server.base("busy") + search);
  EXPECT_EQ(busy.status, 429);
  EXPECT_EQ(busy.retryAfter, 7);
}

TEST_F(Fetching, AServerThatHangsOrDripsIsGivenUp) {
  limit({1, 1});
  EXPECT_EQ(get(server.base("hang") + search).outcome, Outcome::timedOut);
  EXPECT_EQ(get(server.base("slow") + search).outcome, Outcome::timedOut);
}

TEST_F(Fetching, WhatIsTooLargeIsNotTakenToItsEnd) {
  EXPECT_EQ(get(server.base("huge") + search).outcome, Outcome::tooLarge) << "it says so";
  EXPECT_EQ(get(server.base("endless") + search).outcome, Outcome::tooLarge) << "it does not";
}

TEST_F(Fetching, BrokenConnectionsAreTold) {
  EXPECT_EQ(get(server.base("cut") + search).outcome, Outcome::broken);
  EXPECT_EQ(get(server.base("reset") + search).outcome, Outcome::broken);
  EXPECT_NE(get(server.base("reset") + search).detail, "");
}

TEST_F(Fetching, RedirectionsAreFollowedWithinBounds) {
  EXPECT_EQ(get(server.base("moved") + search).body, "[]");
  const std::size_t before = server.requestCount();
  EXPECT_EQ(get(server.base("loop") + search).outcome, Outcome::broken);
  EXPECT_EQ(server.requestCount() - before, 4U);
}

TEST_F(Fetching, NoOtherProtocolIsSpoken) {
  EXPECT_EQ(get(server.base("local") + search).outcome, Outcome::broken);
  EXPECT_EQ(get("file:///etc/passwd").outcome, Outcome::broken);
  EXPECT_EQ(get("http://name:secret@" + server.name() + search).outcome, Outcome::broken);
}

TEST_F(Fetching, WhereNobodyListensOrNothingIsKnownItIsUnreachable) {
  server.stop();
  EXPECT_EQ(get(server.base() + search).outcome, Outcome::unreachable);
  EXPECT_EQ(get("http://nobody.invalid" + std::string(search)).outcome, Outcome::unreachable);
}

TEST_F(Fetching, AProxyOfTheEnvironmentIsUsed) {
  ASSERT_EQ(setenv("http_proxy", server.base().c_str(), 1), 0);
  EXPECT_EQ(get("http://nobody.invalid" + std::string(search)).body, "[]");
  unsetenv("http_proxy");
  EXPECT_NE(server.requests().find("http://nobody.invalid/api/search"), std::string::npos);
}

TEST_F(Fetching, WhatIsBegunAnewOrCancelledIsForgotten) {
  fetch->start(server.base("hang") + search);
  fetch->step();
  EXPECT_EQ(get(server.base() + search).body, "[]") << "in the place of the one that hangs";
  fetch->start(server.base() + search);
  fetch->cancel();
  for (int i = 0; i < 20; ++i) {
    EXPECT_FALSE(fetch->step());
    poll(nullptr, 0, 10);
  }
}

// The slow look-up takes ten seconds.
TEST_F(Fetching, AnEndInTheMiddleWaitsForNothing) {
  for (const std::string& url : {server.base("hang") + search, server.base("slow") + search,
                                 std::string("http://slow.invalid") + search}) {
    fetch->start(url);
    const std::size_t before = server.requestCount();
    for (int i = 0; i < 3000 && server.requestCount() == before && slowLookUps == 0; ++i) {
      ASSERT_FALSE(fetch->step());
      poll(nullptr, 0, 10);
    }
    const auto begin = steady_clock::now();
    limit({});
    EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(5)) << url;
  }
  EXPECT_EQ(slowLookUps, 1);
}

TEST(FetchingSafely, ACertificateThatNobodyVouchesForIsRefused) {
  LyricsServer server({"--tls", VELLORA_UNTRUSTED_CERTIFICATE});
  server.scheme = "https";
  const auto fetch = makeCurlFetch("Tests/1");
  fetch->start(server.base() + search);
  std::optional<Fetched> fetched;
  for (int i = 0; i < 3000 && !fetched; ++i) {
    fetched = fetch->step();
    poll(nullptr, 0, 10);
  }
  ASSERT_TRUE(fetched);
  EXPECT_EQ(fetched->outcome, Outcome::broken);
  EXPECT_NE(fetched->detail.find("certificate"), std::string::npos) << fetched->detail;
  EXPECT_EQ(server.requestCount(), 0U) << "nothing was sent";
}

}  // namespace
}  // namespace vellora::companion
