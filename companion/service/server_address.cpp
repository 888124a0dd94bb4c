#include "companion/service/server_address.h"

#include <algorithm>

#include "base/percent_encoding.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

constexpr std::size_t longestAddress = 500;

// What a host, a port and a path are written with.
bool belongs(char c) {
  constexpr std::string_view others = ":/[]%!$&'()*+,;=";
  return isUnreserved(c) || others.find(c) != others.npos;
}

}  // namespace

std::optional<ServerAddress> parseServerAddress(std::string_view text) {
  if (text.size() > longestAddress || !std::ranges::all_of(text, belongs)) return std::nullopt;
  const std::string lower = lowerCase(text);
  for (const std::string_view scheme : {"https://", "http://"}) {
    if (!lower.starts_with(scheme)) continue;
    std::string_view rest = text.substr(scheme.size());
    while (rest.ends_with('/')) rest.remove_suffix(1);
    const std::string_view host = rest.substr(0, rest.find('/'));
    if (host.empty() || host.front() == ':') return std::nullopt;
    return ServerAddress{std::string(scheme).append(rest), std::string(rest)};
  }
  return std::nullopt;
}

std::string queryValue(std::string_view value) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char c : value) {
    if (isUnreserved(c)) {
      result += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    result.append({'%', digits[byte >> 4U], digits[byte & 15U]});
  }
  return result;
}

}  // namespace vellora::companion
