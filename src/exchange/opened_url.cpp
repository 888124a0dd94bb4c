#include "exchange/opened_url.h"

#include <algorithm>
#include <cstddef>

#include "base/percent_encoding.h"
#include "base/text.h"
#include "base/utf8.h"

namespace vellora {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// RFC 3986, section 3.1. A text that begins with ":" has a scheme too, an empty one, which is no
// one's.
bool isScheme(std::string_view text) {
  return text.empty() || (isLetter(text[0]) && std::ranges::all_of(text, [](char c) {
                            return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
                          }));
}

// An address in brackets, with or without a zone after "%".
bool isAddress(std::string_view text) {
  const std::string_view address = text.substr(0, text.find('%'));
  return std::ranges::all_of(
      address, [](char c) { return isUnreserved(c) || isSubDelimiter(c) || c == ':'; });
}

// A registered name. Characters beyond ASCII are those of an internationalised name.
bool isHost(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '%') {
      if (text.size() - i < 3 || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2])) return false;
    } else if (!isUnreserved(c) && !isSubDelimiter(c) && static_cast<unsigned char>(c) < 0x80) {
      return false;
    }
  }
  return true;
}

// What stands between "//" and the path: user information, host and port.
bool isAuthority(std::string_view text) {
  const std::size_t at = text.rfind('@');
  if (at != std::string_view::npos) text.remove_prefix(at + 1);
  std::string_view port;
  const std::size_t bracket = text.starts_with('[') ? text.find(']') : std::string_view::npos;
  if (bracket != std::string_view::npos) {
    if (!isAddress(text.substr(1, bracket - 1))) return false;
    port = text.substr(bracket + 1);
    if (!port.empty() && port[0] != ':') return false;
  } else {
    const std::size_t colon = std::min(text.find(':'), text.size());
    if (!isHost(text.substr(0, colon))) return false;
    port = text.substr(colon);
  }
  return port.empty() || std::all_of(port.begin() + 1, port.end(), isDigit);
}

// Whether a query is one as it stands: characters of a query, and "%" only before two hex digits.
bool isQuery(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%') {
      if (text.size() - i < 3 || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2])) return false;
    } else if (!isQueryCharacter(text[i])) {
      return false;
    }
  }
  return true;
}

std::optional<std::string> decoded(std::string_view text, bool escaped) {
  if (escaped) return percentDecoded(text);
  return isWellFormed(text) ? std::optional<std::string>(text) : std::nullopt;
}

std::vector<QueryItem> itemsOf(std::string_view query) {
  std::vector<QueryItem> items;
  if (query.empty()) return items;
  const bool escaped = isQuery(query);
  while (true) {
    const std::size_t end = std::min(query.find('&'), query.size());
    const std::string_view item = query.substr(0, end);
    const std::size_t equals = item.find('=');
    QueryItem& added = items.emplace_back();
    added.name = decoded(item.substr(0, equals), escaped).value_or("");
    if (equals != std::string_view::npos) added.value = decoded(item.substr(equals + 1), escaped);
    if (end == query.size()) return items;
    query.remove_prefix(end + 1);
  }
}

}  // namespace

std::optional<OpenedURL> OpenedURL::parse(std::string_view text) {
  if (text.empty()) return std::nullopt;
  OpenedURL url;
  // "[", "]" and "@" before any colon belong to a host, so that there is no scheme.
  const std::size_t colon = text.find_first_of(":/?#[]@");
  if (colon != std::string_view::npos && text[colon] == ':') {
    url.scheme = text.substr(0, colon);
    if (!isScheme(*url.scheme)) return std::nullopt;
    text.remove_prefix(colon + 1);
  }
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    const std::size_t end = std::min(text.find_first_of("/?#"), text.size());
    if (!isAuthority(text.substr(0, end))) return std::nullopt;
    text.remove_prefix(end);
  }
  text = text.substr(0, text.find('#'));
  const std::size_t question = text.find('?');
  if (question != std::string_view::npos) url.queryItems = itemsOf(text.substr(question + 1));
  return url;
}

const QueryItem* OpenedURL::firstItem(std::string_view name) const {
  if (!queryItems) return nullptr;
  const auto item =
      std::ranges::find_if(*queryItems, [&](const QueryItem& each) { return each.name == name; });
  return item == queryItems->end() ? nullptr : &*item;
}

SnapshotLocation acceptedSnapshotLocation(const std::vector<std::string>& urls) {
  if (urls.empty()) return std::nullopt;
  const std::optional<OpenedURL> url = OpenedURL::parse(urls.front());
  if (!url || url->scheme != openedURLScheme) return std::nullopt;
  const QueryItem* const item = url->firstItem("snapshot");
  if (item == nullptr || !item->value) return std::nullopt;
  const std::string& path = *item->value;
  if (!textBeginsWith(path, "/") || !path.ends_with("/Vellora/snapshot.json")) return std::nullopt;
  return path;
}

}  // namespace vellora
