#include "platform/linux/glib/quoted_text.h"

#include <glib.h>

namespace vellora {

namespace {

constexpr int longestQuotation = 80;  // characters

}  // namespace

std::string printable(const std::string& text, int longest) {
  std::string result;
  const char* next = text.c_str();
  for (int taken = 0; *next != '\0'; ++taken) {
    if (taken == longest) return result + "…";
    const char* const end = g_utf8_next_char(next);
    if (g_unichar_iscntrl(g_utf8_get_char(next)) != FALSE) {
      result += '?';
    } else {
      result.append(next, end);
    }
    next = end;
  }
  return result;
}

std::string inQuotes(const std::string& text) {
  return '"' + printable(text, longestQuotation) + '"';
}

}  // namespace vellora
