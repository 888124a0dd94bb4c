#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vellora {

// What an element of a window has to be like: what each list asks for. An empty list asks nothing;
// of the entries of the others one must fit. Texts are UTF-8 and compared byte by byte.
struct ElementPattern {
  std::vector<std::uint32_t> roles;  // numbers of AtspiRole
  std::vector<std::string> names;    // accessible names
  // Globs (`*`, `?`) for a word of the element's classes: AT-SPI's attribute "class", in which a
  // page's markup lists several between blanks.
  std::vector<std::string> classes;
  std::vector<std::string> ids;  // globs for AT-SPI's attribute "id", or the accessible id

  bool isEmpty() const;
  bool operator==(const ElementPattern&) const = default;
};

// What is known of an element that a pattern is held against.
struct ElementTraits {
  std::uint32_t role = 0;
  std::string name;
  std::string classes;  // between blanks
  std::string id;
};

bool fits(const ElementPattern& pattern, const ElementTraits& element);

// Whether the whole text fits a glob: `*` stands for any characters, `?` for one; all others for
// themselves.
bool fitsGlob(const std::string& glob, const std::string& text);

}  // namespace vellora
