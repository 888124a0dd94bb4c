#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "platform/linux/accessibility/view_explanation.h"
#include "platform/linux/players/role_names.h"

namespace vellora {

// An element of an explanation; `top` is its place, below that of all before it where it is not
// given.
struct ListedElement {
  int depth = 0;
  std::string role = {};
  std::string text = {};
  std::string classes = {};
  std::string id = {};
  std::string name = {};
  double top = -1;
};

inline std::vector<ExplainedElement> elementList(const std::vector<ListedElement>& listed) {
  std::vector<ExplainedElement> elements;
  double next = 100;
  for (const ListedElement& one : listed) {
    const double top = one.top < 0 ? next : one.top;
    next = std::max(next, top) + 50;
    elements.push_back({.role = roleNumber(one.role).value(),
                        .name = one.name,
                        .classes = one.classes,
                        .id = one.id,
                        .frame = Rect{10, top, 400, 20},
                        .text = one.text,
                        .depth = one.depth});
  }
  return elements;
}

}  // namespace vellora
