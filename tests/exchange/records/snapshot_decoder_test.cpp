#include "exchange/records/snapshot_decoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "exchange/records/json.h"
#include "exchange/records/json_tree.h"
#include "exchange/records/json_value.h"

namespace vellora {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view ordinary =
    R"({"version":1,"updatedAt":1000.5,"enabled":true,"musicTitle":"Night Drive",)"
    R"("musicArtist":"River Band","fontSize":32,"verticalOffset":-4,)"
    R"("lines":[{"source":"Hold on,","translation":"Halt ein,"},)"
    R"({"source":"\"]é\u0301","translation":"]}\\\"["}]})";

// Everything but equal bytes would be found different in the captions.
std::string described(const std::optional<OverlaySnapshot>& snapshot) {
  if (!snapshot) return "none";
  const auto bits = [](double value) {
    return std::to_string(std::bit_cast<std::uint64_t>(value));
  };
  std::string text = std::to_string(snapshot->version) + "|" + bits(snapshot->updatedAt) + "|" +
                     std::to_string(snapshot->enabled) + "|" + snapshot->musicTitle + "|" +
                     snapshot->musicArtist + "|" + bits(snapshot->fontSize) + "|" +
                     bits(snapshot->verticalOffset);
  for (const OverlayLine& line : snapshot->lines) {
    text += "\n" + line.source + "|" + line.translation;
  }
  return text;
}

// The field of that name: of the first such member, and never null.
template <typename Value>
bool readMember(JsonObject& object, std::string_view key, Value& field) {
  JsonValue* const value = object.find(key);
  return value != nullptr && readJson(*value, field);
}

// The plain way: the whole tree first, then its fields.
std::optional<OverlaySnapshot> ofTree(const std::string& text) {
  std::optional<JsonValue> tree = parseJson(text);
  auto* const object = tree ? std::get_if<JsonObject>(&tree->value) : nullptr;
  if (object == nullptr) return std::nullopt;
  OverlaySnapshot snapshot;
  const bool isRead = readMember(*object, "version", snapshot.version) &&
                      readMember(*object, "updatedAt", snapshot.updatedAt) &&
                      readMember(*object, "enabled", snapshot.enabled) &&
                      readMember(*object, "musicTitle", snapshot.musicTitle) &&
                      readMember(*object, "musicArtist", snapshot.musicArtist) &&
                      readMember(*object, "fontSize", snapshot.fontSize) &&
                      readMember(*object, "verticalOffset", snapshot.verticalOffset);
  JsonValue* const lines = object->find("lines");
  auto* const array = lines != nullptr ? std::get_if<JsonArray>(&lines->value) : nullptr;
  if (!isRead || array == nullptr) return std::nullopt;
  std::vector<OverlayLine> read;
  for (JsonValue& element : *array) {
    auto* const line = std::get_if<JsonObject>(&element.value);
    OverlayLine& added = read.emplace_back();
    if (line == nullptr || !readMember(*line, "source", added.source) ||
        !readMember(*line, "translation", added.translation)) {
      return std::nullopt;
    }
  }
  snapshot.lines = std::move(read);
  return snapshot;
}

// One decoder beside the plain way, fed one text after the other.
struct Follower {
  std::optional<OverlaySnapshot> follow(const std::string& text) {
    const auto snapshot = decoder.decode(before, text);
    const std::string plain = described(ofTree(text));
    EXPECT_EQ(described(snapshot), plain) << text;
    EXPECT_EQ(described(decode<OverlaySnapshot>(text)), plain) << text;
    // The lines were there before, and were not decoded again.
    shared = snapshot && last && snapshot->lines.isSharedWith(last->lines);
    before = text;
    last = snapshot;
    return snapshot;
  }

  SnapshotDecoder decoder;
  std::string before;
  std::optional<OverlaySnapshot> last;
  bool shared = false;
};

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  const std::size_t at = text.find(what);
  EXPECT_NE(at, std::string::npos) << what;
  return text.replace(at, what.size(), by);
}

TEST(SnapshotDecoderTest, LinesBesideAnotherTimeAreNotDecodedAgain) {
  Follower follower;
  follower.follow(std::string(ordinary));
  for (const char* time : {"1001.5", "9", "1e9", "100000000000.25", "-0", " 12 ", "1000.5"}) {
    ASSERT_TRUE(follower.follow(replaced(std::string(ordinary), "1000.5", time)));
    EXPECT_TRUE(follower.shared) << time;
  }
}

TEST(SnapshotDecoderTest, LinesBesideAnotherTitleOrBeforeWhatChangesAreNotDecodedAgain) {
  Follower follower;
  follower.follow(std::string(ordinary));
  follower.follow(replaced(std::string(ordinary), "Night Drive", "[\\u00e9]"));
  EXPECT_TRUE(follower.shared);
  const std::string linesFirst =
      R"({"lines":[{"source":"a","translation":"b"}],"version":1,"updatedAt":1,"enabled":true,)"
      R"("musicTitle":"","musicArtist":"","fontSize":1,"verticalOffset":0})";
  follower.follow(linesFirst);
  EXPECT_FALSE(follower.shared);
  follower.follow(replaced(linesFirst, "\"updatedAt\":1", "\"updatedAt\":1.25"));
  EXPECT_TRUE(follower.shared);
}

TEST(SnapshotDecoderTest, AChangedLineIsDecoded) {
  Follower follower;
  follower.follow(std::string(ordinary));
  const auto snapshot = follower.follow(replaced(std::string(ordinary), "Halt ein", "Halt aus"));
  EXPECT_EQ(snapshot->lines[0].translation, "Halt aus,");
  EXPECT_FALSE(follower.shared);
}

// What goes before the lines decides what they are.
TEST(SnapshotDecoderTest, TheSameTextInAnotherPlaceIsAnotherThing) {
  const std::string text(ordinary);
  const std::string array = text.substr(text.find("[{"), text.size() - text.find("[{") - 1);
  const std::array others{
      replaced(text, "\"lines\":[", "\"linez\":["),
      replaced(text, "\"lines\":[", "\"lines\":5,\"lines\":["),
      replaced(text, "\"lines\":[", "\"lines\":[],\"lines\":["),
      replaced(text, "\"lines\":[", "\"\\u006cines\":["),
      replaced(text, "\"lines\":[", "\"lines\":\"["),
      replaced(text, "\"lines\":[", "\"lines\":[" + array + ",["),
      replaced(text, "\"lines\":[", "\"lines\":{\"lines\":["),
      replaced(text, "\"lines\":[", "\"x\":{\"lines\":["),
      replaced(text, "\"lines\":[", "\"lines\":[["),
      replaced(text, "\"lines\":[", "\"lines\":-["),
      replaced(text, "{\"version\"", "[{\"version\""),
      replaced(text, "{\"version\"", "\xEF\xBB\xBF{\"version\""),
      replaced(text, "\"updatedAt\":1000.5", "\"updatedAt\":null"),
      replaced(text, "\"updatedAt\":1000.5", "\"updatedAt\":1e999"),
      replaced(text, "\"updatedAt\":1000.5", "\"updatedAt\":01"),
      replaced(text, "\"updatedAt\":1000.5", "\"updatedAt\":1,\"updatedAt\":2"),
      replaced(text, "Night Drive", "Night \xFF Drive"),
      replaced(text, "Night Drive", "Night\",\"lines\":" + array + ",\"x\":\""),
      text + " ",
      text + "}",
      text + ",",
      text + std::string(1, '\0'),
      std::string(1, '\0') + text,
      array,
      "{" + array + "}",
      "{\"lines\":" + array + "}",
      std::string(),
  };
  for (const std::string& other : others) {
    Follower follower;
    follower.follow(text);
    follower.follow(other);
    follower.follow(text);
    follower.follow(other);
  }
}

// Objects in the way that companions write them and in ways that they do not, and changes of every
// kind.
class RandomTexts {
 public:
  std::string snapshot() {
    std::string lines = "[";
    for (std::size_t left = below(6); left > 0; --left) {
      lines +=
          below(40) == 0 ? oddLine() : "{\"source\":" + text() + ",\"translation\":" + text() + "}";
      if (left > 1) lines += oneOf({",", ", "});
    }
    lines += "]";
    std::vector<std::string> members{
        "\"version\":1",
        "\"updatedAt\":" + number(),
        "\"enabled\":true",
        "\"musicTitle\":" + text(),
        "\"musicArtist\":" + text(),
        "\"fontSize\":" + number(),
        "\"verticalOffset\":0",
        "\"lines\":" + lines,
    };
    if (below(3) == 0) std::shuffle(members.begin(), members.end(), engine_);
    if (below(4) == 0) {
      const auto at = static_cast<std::ptrdiff_t>(below(members.size() + 1));
      members.insert(members.begin() + at, oneOf({"\"lines\":[]", "\"updatedAt\":3",
                                                  "\"x\":{\"lines\":[{}]}", "\"lines\":null"}));
    }
    std::string all = "{";
    for (const std::string& member : members) all += (all.size() > 1 ? "," : "") + member;
    return all + "}";
  }

  // Another time mostly, as a companion writes it; else any damage.
  std::string changed(std::string text) {
    const std::size_t kind = below(10);
    const std::size_t at = below(text.size() + 1);
    if (kind < 4) {
      const std::size_t time = text.find("\"updatedAt\":");
      if (time == std::string::npos) return text;
      const std::size_t begin = time + 12;
      const std::size_t end = std::min(text.find_first_of(",}", begin), text.size());
      return text.replace(begin, end - begin, number());
    }
    if (kind < 6 && at < text.size()) {
      text[at] = character();
    } else if (kind == 6) {
      text.insert(at, 1, character());
    } else if (kind == 7) {
      text.erase(at, below(3));
    } else if (kind == 8) {
      text.resize(at);
    } else {
      text = snapshot();
    }
    return text;
  }

 private:
  std::size_t below(std::size_t limit) { return engine_() % limit; }
  std::string oneOf(std::initializer_list<const char*> choices) {
    return choices.begin()[below(choices.size())];
  }
  char character() {
    static constexpr std::string_view all = "\0\x1f\"\\{}[],:-+.eE01nlt \xEF\xBB\x80\xff"sv;
    return all[below(all.size())];
  }
  std::string oddLine() {
    return oneOf({"null", "1", "[]", "{}", "{\"source\":\"a\"}", "\"a\"",
                  "{\"source\":\"a\",\"translation\":\"b\",\"source\":3}",
                  "{\"lines\":[{}],\"translation\":\"b\",\"source\":\"a\"}",
                  "{\"source\":null,\"source\":\"a\",\"translation\":\"b\"}"});
  }
  std::string number() {
    if (below(3) > 0) return std::to_string(below(2'000'000'000)) + oneOf({"", ".5", ".125"});
    return oneOf({"0", "-0", "1", "1732291200.125", "1732291201.5", "1e9", "1E+5", "0.1", "1e-400",
                  "1e999", "01", ".5", "1.", "null", "\"1\"", "true", "-", " 7 "});
  }
  std::string text() {
    return oneOf({"\"\"", "\"a\"", "\"\xE6\x88\x91\"", "\"[\\\"]\"", "\"\\u00e9\"", "\"]\"",
                  "\"lines\"", "\"\\\\\"", "\"\\ud83c\\udfb5\""});
  }

  std::mt19937_64 engine_{20261122};
};

TEST(SnapshotDecoderPropertyTest, DecodesEveryTextAfterAnyOtherAsThePlainDecoderDoes) {
  RandomTexts random;
  int followed = 0;
  int shared = 0;
  for (int song = 0; song < 500; ++song) {
    Follower follower;
    std::string text = random.snapshot();
    const std::string first = text;
    for (int step = 0; step < 12; ++step) {
      if (follower.follow(text)) ++followed;
      if (follower.shared) ++shared;
      ASSERT_FALSE(HasFailure());
      text = random.changed(step % 3 == 2 ? first : text);
    }
  }
  EXPECT_GT(followed, 1000);
  EXPECT_GT(shared, 300);
}

}  // namespace
}  // namespace vellora
