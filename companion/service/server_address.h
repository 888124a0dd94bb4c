#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vellora::companion {

// The service that is asked unless the user names another.
inline constexpr std::string_view defaultLyricsServer = "https://lrclib.net";

// Where a service of lyrics is.
struct ServerAddress {
  std::string base;  // "https://lrclib.net", without a slash at its end
  std::string name;  // for people: "lrclib.net", "localhost:3300"

  bool operator==(const ServerAddress&) const = default;
};

// The address that a user has written: http or https, a host, with a port and a path if need be.
// Nothing for one with a user's name, a query or a fragment, with blanks or control characters.
std::optional<ServerAddress> parseServerAddress(std::string_view text);

// `value` as a value within a query (RFC 3986): all but letters, digits and -._~ is escaped.
std::string queryValue(std::string_view value);

}  // namespace vellora::companion
