#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/exchange_folder.h"

namespace vellora {

// The scheme of the URLs that name a snapshot file.
inline constexpr std::string_view openedURLScheme = "tessaly-overlay";

// One name=value of a query, percent-decoded.
struct QueryItem {
  std::string name;
  std::optional<std::string> value;  // absent without "=", and where the bytes are not UTF-8
};

// What the program looks at in a URL that it is asked to open. Host and path are not among it.
struct OpenedURL {
  std::optional<std::string> scheme;                 // in its own letter case; absent when relative
  std::optional<std::vector<QueryItem>> queryItems;  // absent without "?"

  // Takes a URL apart (RFC 3986, without a base). A query that holds characters that no URL can, a
  // blank for instance, is taken as it stands, without decoding, as macOS's URL type does.
  // Nothing for an empty text, and where scheme, host or port cannot be one.
  static std::optional<OpenedURL> parse(std::string_view text);

  // The first query item of that exact name.
  const QueryItem* firstItem(std::string_view name) const;
};

// Where the first of these URLs, which alone counts, wants the snapshot file to be: the value of
// its first query item "snapshot", an absolute path that ends with "/Vellora/snapshot.json".
// Nothing for every other URL. Any thread.
SnapshotLocation acceptedSnapshotLocation(const std::vector<std::string>& urls);

}  // namespace vellora
