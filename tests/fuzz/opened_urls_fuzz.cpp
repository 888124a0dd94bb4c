#include <string>

#include "base/percent_encoding.h"
#include "base/utf8.h"
#include "exchange/opened_url.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"

namespace vellora {

namespace {

constexpr std::string_view ending = "/Vellora/snapshot.json";

void requireOnlyAcceptable(const std::string& url) {
  const auto parsed = OpenedURL::parse(url);
  const auto location =
      acceptedSnapshotLocation({url, "tessaly-overlay:?snapshot=/" + std::string(ending)});
  if (!location) return;
  require(parsed && parsed->scheme == "tessaly-overlay", "the scheme of an accepted URL");
  require(url.starts_with("tessaly-overlay:"), "the beginning of an accepted URL");
  const std::string& path = location->native();
  require(path.starts_with('/') && path.ends_with(ending), "an accepted path");
  require(isWellFormed(path), "an accepted path's UTF-8");
}

// Every absolute path of that ending can be told by a URL.
void requireRoundTrip(std::string_view bytes) {
  const std::string path = "/" + wellFormed(bytes) + std::string(ending);
  const std::string encoded = percentEncodedForQuery(path);
  require(percentDecoded(encoded) == path, "what is encoded decodes to itself");
  std::string url = "tessaly-overlay://open?snapshot=";
  for (const char c : encoded) {  // "&" and "#" mean something in a query
    url += c == '&' ? "%26" : c == '#' ? "%23" : std::string(1, c);
  }
  const auto location = acceptedSnapshotLocation({url});
  // "/" and a mark that joins it are one character, which no path begins with.
  if (location) require(location->native() == path, "the path that was told");
  if (isAscii(path)) require(location.has_value(), "a path of ASCII is accepted");
}

}  // namespace

void fuzzOpenedUrls(std::string_view bytes) {
  requireOnlyAcceptable(std::string(bytes));
  requireOnlyAcceptable("tessaly-overlay:" + std::string(bytes));
  requireRoundTrip(bytes);
}

}  // namespace vellora
