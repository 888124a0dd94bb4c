#include "exchange/opened_url.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vellora {
namespace {

SnapshotLocation accepted(const std::string& url) { return acceptedSnapshotLocation({url}); }

TEST(OpenedURLTest, AbsolutePathOfASnapshotInAFolderVelloraIsAccepted) {
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=/Users/a/Vellora/snapshot.json"),
            "/Users/a/Vellora/snapshot.json");
  EXPECT_EQ(accepted("tessaly-overlay:?snapshot=/Vellora/snapshot.json"), "/Vellora/snapshot.json");
}

TEST(OpenedURLTest, OtherPathsAreRejected) {
  for (const char* path :
       {"Vellora/snapshot.json", "/tmp/snapshot.json", "/a/vellora/snapshot.json",
        "/a/Vellora/snapshot.json/", "/a/Vellora/Snapshot.json", "/aVellora/snapshot.json",
        "/a/Vellora/snapshot.json%00", "%00/a/Vellora/snapshot.json", "", "/"}) {
    EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=" + std::string(path)), std::nullopt) << path;
  }
}

TEST(OpenedURLTest, SchemeIsComparedExactly) {
  const std::string rest = "://x?snapshot=/Users/a/Vellora/snapshot.json";
  EXPECT_TRUE(accepted("tessaly-overlay" + rest));
  EXPECT_EQ(accepted("TESSALY-OVERLAY" + rest), std::nullopt);
  EXPECT_EQ(accepted("Tessaly-overlay" + rest), std::nullopt);
  EXPECT_EQ(accepted("tessaly" + rest), std::nullopt);
  EXPECT_EQ(accepted("?snapshot=/Users/a/Vellora/snapshot.json"), std::nullopt);
  EXPECT_EQ(accepted("//x?snapshot=/Users/a/Vellora/snapshot.json"), std::nullopt);
}

TEST(OpenedURLTest, HostAndPathAreNotLookedAt) {
  for (const char* place : {"//", "//host", "//user:pw@host:80/path/to", "/path", "//[::1]/", "",
                            "opaque", "//h%C3%A9", "//host:"}) {
    EXPECT_EQ(
        accepted("tessaly-overlay:" + std::string(place) + "?snapshot=/Vellora/snapshot.json"),
        "/Vellora/snapshot.json")
        << place;
  }
}

TEST(OpenedURLTest, OnlyTheFirstURLIsExamined) {
  const std::string good = "tessaly-overlay://x?snapshot=/b/Vellora/snapshot.json";
  EXPECT_EQ(acceptedSnapshotLocation({"tessaly-overlay://x?snapshot=relative", good}),
            std::nullopt);
  EXPECT_EQ(acceptedSnapshotLocation({good, "nonsense"}), "/b/Vellora/snapshot.json");
  EXPECT_EQ(acceptedSnapshotLocation({}), std::nullopt);
}

TEST(OpenedURLTest, FirstItemOfTheNameCounts) {
  EXPECT_EQ(accepted("tessaly-overlay://x?other=1&snapshot=/a/Vellora/snapshot.json"
                     "&snapshot=/b/Vellora/snapshot.json"),
            "/a/Vellora/snapshot.json");
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot&snapshot=/b/Vellora/snapshot.json"),
            std::nullopt);
  EXPECT_EQ(accepted("tessaly-overlay://x?Snapshot=/b/Vellora/snapshot.json"), std::nullopt);
  EXPECT_EQ(accepted("tessaly-overlay://x?a=snapshot=/b/Vellora/snapshot.json"), std::nullopt);
}

TEST(OpenedURLTest, ItemWithoutAValueIsRejected) {
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot"), std::nullopt);
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot="), std::nullopt);
  EXPECT_EQ(accepted("tessaly-overlay://x?"), std::nullopt);
  EXPECT_EQ(accepted("tessaly-overlay://x"), std::nullopt);
  EXPECT_EQ(accepted("tessaly-overlay://x#f?snapshot=/a/Vellora/snapshot.json"), std::nullopt);
}

TEST(OpenedURLTest, ValueIsPercentDecodedAndPlusStays) {
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=%2Fa%20b%2fVellora%2Fsnapshot.json"),
            "/a b/Vellora/snapshot.json");
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=/a+b/Vellora/snapshot.json"),
            "/a+b/Vellora/snapshot.json");
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=/%E6%AD%8C/Vellora/snapshot.json"),
            "/\u6B4C/Vellora/snapshot.json");
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=/%FF/Vellora/snapshot.json"), std::nullopt);
}

TEST(OpenedURLTest, QueryThatNoURLCanHoldIsTakenAsItStands) {
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=/a b%20/Vellora/snapshot.json"),
            "/a b%20/Vellora/snapshot.json");
  EXPECT_EQ(accepted("tessaly-overlay://x?snapshot=/%zz%20/Vellora/snapshot.json"),
            "/%zz%20/Vellora/snapshot.json");
}

TEST(OpenedURLTest, TextsThatAreNoURLAreRejected) {
  for (const char* text : {"", "1tessaly://x?a", "te ssaly://x?a", "a://x:port/?a", "a://[::1/?a",
                           "a://[::1]x/?a", "a://x y/?a", "a://[<]/?a", "a://h%zz/?a"}) {
    EXPECT_FALSE(OpenedURL::parse(text)) << text;
  }
}

TEST(OpenedURLTest, AbsentPartsAreToldFromEmptyOnes) {
  EXPECT_EQ(OpenedURL::parse("a/b:c")->scheme, std::nullopt);
  EXPECT_EQ(OpenedURL::parse("a:b")->scheme, "a");
  EXPECT_FALSE(OpenedURL::parse("a:b")->queryItems);
  EXPECT_TRUE(OpenedURL::parse("a:b?")->queryItems->empty());
  const std::vector<QueryItem> items = *OpenedURL::parse("a:?&x&y=&=z")->queryItems;
  ASSERT_EQ(items.size(), 4U);
  EXPECT_EQ(items[0].name, "");
  EXPECT_EQ(items[0].value, std::nullopt);
  EXPECT_EQ(items[1].value, std::nullopt);
  EXPECT_EQ(items[2].value, "");
  EXPECT_EQ(items[3].name, "");
  EXPECT_EQ(items[3].value, "z");
}

}  // namespace
}  // namespace vellora
