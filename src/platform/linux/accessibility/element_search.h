#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/linux/accessibility/element_facts.h"
#include "platform/linux/players/element_pattern.h"

namespace vellora {

// Pieces of searches. Each is a function of what is known, gives nothing (std::nullopt or false) as
// long as an answer is missing, and has the questions lined up then.

// The element that was looked for; nothing inside when there is none.
using Sought = std::optional<std::optional<ElementIndex>>;

std::optional<bool> fits(ElementFacts& facts, const ElementPattern& pattern, ElementIndex element);

// What a walk does after an element.
enum class WalkStep {
  into,     // its children next
  over,     // not its children
  stop,     // nothing more
  unknown,  // it cannot be told yet; what comes later may only be looked at ahead
};

// Visits what is below `top`, each element before its children and no element twice: at most some
// thousand elements. False when it met something that is not known yet.
bool walk(ElementFacts& facts, ElementIndex top,
          const std::function<WalkStep(ElementIndex element)>& visit);

// The first element below `top` of which `isSought` is true. It is asked about the elements of the
// roles only, where there are roles.
Sought findFirst(ElementFacts& facts, ElementIndex top, const std::vector<std::uint32_t>& roles,
                 const std::function<std::optional<bool>(ElementIndex element)>& isSought);

// The elements below `top` of one of the roles, in the tree's order.
std::optional<ElementList> findAll(ElementFacts& facts, ElementIndex top,
                                   const std::vector<std::uint32_t>& roles);

// The nearest that fits, from `element` itself upwards, but no further than `top`, itself included.
Sought climb(ElementFacts& facts, const ElementPattern& pattern, ElementIndex element,
             ElementIndex top);

// What an element reads: its name; where it has none its text, in which an object that stands for
// characters (U+FFFC) gives its own text; where it has none the texts of its children, with blanks
// between. White space is collapsed.
std::optional<std::string> textOf(ElementFacts& facts, ElementIndex element);

}  // namespace vellora
