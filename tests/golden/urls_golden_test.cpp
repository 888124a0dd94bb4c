#include <optional>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "base/percent_encoding.h"
#include "base/utf8.h"
#include "exchange/opened_url.h"
#include "golden/golden_table.h"

namespace vellora::golden {
namespace {

// What the table says of a URL, with the value as text and not in base64.
std::string verdict(const std::optional<OpenedURL>& url) {
  if (!url) return "no url";
  const std::string scheme = "scheme=" + url->scheme.value_or("nothing");
  if (!url->queryItems) return scheme + " no query";
  const QueryItem* const item = url->firstItem("snapshot");
  if (item == nullptr) return scheme + " no item";
  return scheme + " value=" + item->value.value_or("nothing");
}

std::string withoutBase64(const std::string& field) {
  const std::string mark = " value=";
  const std::size_t at = field.find(mark);
  if (at == std::string::npos || field.substr(at) == mark + "nothing") return field;
  return field.substr(0, at) + mark + fromBase64(field.substr(at + mark.size()));
}

TEST(UrlsGoldenTest, OpenedURLsAreTakenApartAsTheTableHasThem) {
  everyRow("opened-urls.tsv", 2, [](const Row& row) -> std::string {
    const std::string actual = verdict(OpenedURL::parse(fromBase64(row[0])));
    return actual == withoutBase64(row[1]) ? "" : "verdict: " + actual;
  });
}

TEST(UrlsGoldenTest, SearchTermsAreEncodedAsTheTableHasThem) {
  everyRow("percent-encoding.tsv", 2, [](const Row& row) -> std::string {
    const std::string actual = percentEncodedForQuery(fromBase64(row[0]));
    return actual == row[1] ? "" : "encoded as " + actual;
  });
}

TEST(UrlsGoldenTest, ExactlyTheTablesCharactersStayAsTheyAre) {
  std::set<char32_t> kept;
  everyRow("url-query-allowed.tsv", 2, [&](const Row& row) -> std::string {
    for (char32_t c = codePoint(row[0]); c <= codePoint(row[1]); ++c) kept.insert(c);
    return "";
  });
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::string text;
    appendCharacter(text, c);
    ASSERT_EQ(percentEncodedForQuery(text) == text, kept.contains(c)) << toCodePoints(text);
  }
}

}  // namespace
}  // namespace vellora::golden
