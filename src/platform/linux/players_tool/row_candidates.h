#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/accessibility/view_explanation.h"
#include "platform/linux/players/element_pattern.h"
#include "platform/linux/players/player_descriptions.h"

namespace vellora {

// An element as it was met.
struct SurveyedElement {
  std::optional<std::size_t> parent;  // place in the survey; the first element has none
  ElementTraits traits;
  std::string text;           // what it reads with all that is in it
  std::optional<double> top;  // where it is; nothing: nowhere
};

// A page or a window, and the elements in it in the tree's order, each before its children.
using ElementSurvey = std::vector<SurveyedElement>;

// The elements of an explanation, below one that stands for the page or window itself.
ElementSurvey surveyOf(const std::vector<ExplainedElement>& elements);

// Elements that might be the rows of lyrics, and patterns that fit them and what they lie in.
struct RowCandidate {
  ElementPattern row;
  ElementPattern view;  // empty: no pattern was found that fits an element around first
  std::vector<std::size_t> members;   // places in the survey, in order
  std::optional<std::size_t> holder;  // the element that `view` fits
};

// The likeliest first: those with "lyric" in a name, class or identifier, then those with the most
// rows. At least three elements each, with different texts, one below the other.
std::vector<RowCandidate> rowCandidates(const ElementSurvey& survey);

// The text of a description to begin with. `address` is that of the page; empty: it is none.
std::string draftDescription(const RowCandidate& candidate, const WindowNames& window,
                             const std::string& address);

// A pattern's lines in a description.
std::string patternLines(const ElementPattern& pattern);

}  // namespace vellora
