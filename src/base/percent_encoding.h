#pragma once

#include <optional>
#include <string>
#include <string_view>

// The parts of RFC 3986 that the program needs. Texts are bytes of UTF-8. Any thread.
namespace vellora {

// Sections 2.3 and 2.2: letters, digits and -._~, and the delimiters !$&'()*+,;= within a
// component.
bool isUnreserved(char c);
bool isSubDelimiter(char c);

// Section 3.4: what stands unescaped in a query, % not counted.
bool isQueryCharacter(char c);

bool isHexDigit(char c);

// Section 2.1: every byte that is not a query character as % and two upper-case hex digits.
std::string percentEncodedForQuery(std::string_view text);

// The reverse for any component; "+" stays as it is. Nothing where a "%" is not followed by two hex
// digits or the bytes that come out are not UTF-8.
std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace vellora
