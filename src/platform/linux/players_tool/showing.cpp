#include "platform/linux/players_tool/showing.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>

#include "base/utf8.h"
#include "platform/linux/glib/quoted_text.h"
#include "platform/linux/players/role_names.h"
#include "platform/linux/players_tool/row_candidates.h"

namespace vellora {

namespace {

constexpr std::size_t mostCandidates = 4;
constexpr std::size_t mostSamples = 3;
constexpr std::size_t mostAround = 4;
constexpr std::size_t mostLeftOut = 3;

std::string shown(const std::string& text, int longest = 60) {
  return '"' + printable(wellFormed(text), longest) + '"';
}

std::string counted(std::size_t count, const std::string& one, const std::string& several) {
  return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

std::string rounded(double value) { return std::to_string(std::lround(value)); }

std::string placeOf(const Rect& rect) {
  return rounded(rect.x) + ',' + rounded(rect.y) + ' ' + rounded(rect.width) + "x" +
         rounded(rect.height);
}

// push button "Play", class "a b", id "c"
std::string traitsText(const ElementTraits& traits) {
  std::string text = roleName(traits.role);
  if (!traits.name.empty()) text += ' ' + shown(traits.name, 30);
  if (!traits.classes.empty()) text += ", class " + shown(traits.classes);
  if (!traits.id.empty()) text += ", id " + shown(traits.id);
  return text;
}

// The first with a view.
const ExplainedView* counting(const WindowExplanation& found) {
  const auto first = std::ranges::find(found.views, std::string(), &ExplainedView::whyNot);
  return first == found.views.end() ? nullptr : &*first;
}

bool isTaken(const ExplainedCandidate& candidate) { return candidate.whyNot.empty(); }

// GTK 3 gives the least number for where an element is that is not shown.
bool isInSight(const ExplainedElement& element) {
  return element.frame && element.frame->y > std::numeric_limits<std::int32_t>::min() / 2.0;
}

class Report {
 public:
  Report(const FrontWindow& window, const WindowExplanation& found, std::ostream& output)
      : window_(window), found_(found), survey_(surveyOf(found.elements)), output_(output) {}

  void write() {
    writeWindow();
    if (!found_.whyNot.empty()) output_ << found_.whyNot << '\n';
    writeDescriptions();
    if (const ExplainedView* const view = counting(found_)) writeView(*view);
    if (isReadAsItIs()) {
      output_ << "\nWhat is read in it, \"vellora --diagnose\" tells.\n";
    } else if (!found_.elements.empty()) {
      writeCandidates();
    }
  }

 private:
  void writeWindow() {
    // A Wayland window has no class.
    const bool hasApplication = !window_.names.applicationId.empty();
    const bool hasClass = !window_.names.classPart.empty() || !hasApplication;
    output_ << "Window: ";
    if (hasClass) output_ << "class " << shown(window_.names.classPart);
    if (hasClass && hasApplication) output_ << ", ";
    if (hasApplication) output_ << "application " << shown(window_.names.applicationId);
    output_ << ", process " << window_.player.process << '\n';
    if (!found_.program.empty()) output_ << "Program: " << shown(found_.program) << '\n';
    output_ << "Media player of the process: "
            << (found_.hasMediaPlayer ? shown(found_.played) : "none") << '\n';
    if (!found_.page.empty()) {
      output_ << "Page: " << printable(wellFormed(found_.page), 200) << '\n';
    }
  }

  bool isReadAsItIs() const {
    return counting(found_) == nullptr &&
           std::ranges::any_of(window_.player.descriptions,
                               [](const auto& description) { return !description->lyrics; });
  }

  void writeDescriptions() {
    output_ << '\n';
    if (window_.player.descriptions.empty()) output_ << "No description names this window.\n";
    const ExplainedView* const first = counting(found_);
    std::size_t others = 0;
    for (const ExplainedView& view : found_.views) {
      if (first != nullptr && &view != first && !view.whyNot.empty()) {
        ++others;
        continue;
      }
      output_ << printable(wellFormed(view.description->identifier), 60) << ": "
              << (&view == first        ? "This one counts."
                  : view.whyNot.empty() ? "Another one comes before it."
                                        : view.whyNot)
              << '\n';
      if (&view != first) writeLeftOut(view.candidates);
    }
    if (others > 0) output_ << counted(others, "other does", "others do") << " not count.\n";
  }

  // How many elements each reason has, and which, where they are few.
  void writeLeftOut(const std::vector<ExplainedCandidate>& candidates) {
    std::map<std::string, std::vector<const ExplainedElement*>> byReason;
    for (const ExplainedCandidate& candidate : candidates) {
      if (!isTaken(candidate)) byReason[candidate.whyNot].push_back(&candidate.element);
    }
    for (const auto& [reason, elements] : byReason) {
      output_ << "    not " << counted(elements.size(), "element", "elements") << ": " << reason
              << '\n';
      if (elements.size() > mostLeftOut) continue;
      for (const ExplainedElement* const element : elements) {
        output_ << "        " << traitsText(traitsOf(*element)) << '\n';
      }
    }
  }

  static ElementTraits traitsOf(const ExplainedElement& element) {
    return {
        .role = element.role, .name = element.name, .classes = element.classes, .id = element.id};
  }

  void writeView(const ExplainedView& view) {
    output_ << '\n';
    const auto taken = std::ranges::find_if(view.candidates, isTaken);
    if (taken != view.candidates.end()) {
      output_ << "Lyrics: " << traitsText(traitsOf(taken->element)) << '\n';
    }
    if (view.viewport) output_ << "Seen of them: " << placeOf(*view.viewport) << '\n';
    if (!view.title.empty()) output_ << "Title: " << shown(view.title) << '\n';
    std::vector<const ExplainedElement*> rows;
    for (const ExplainedCandidate& row : view.rows) {
      if (isTaken(row)) rows.push_back(&row.element);
    }
    if (rows.empty()) {
      output_ << "No rows: nothing in it fits [Row] and has a text.\n";
    } else {
      output_ << counted(rows.size(), "row", "rows")
              << ", with place and size in points and the room to the next one:\n";
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
      writeRow(i + 1, *rows[i], i + 1 < rows.size() ? rows[i + 1] : nullptr);
    }
    writeLeftOut(view.rows);
  }

  void writeRow(std::size_t number, const ExplainedElement& row, const ExplainedElement* next) {
    output_ << "    " << number << "  " << (isInSight(row) ? placeOf(*row.frame) : "out of sight");
    if (isInSight(row) && next != nullptr && isInSight(*next)) {
      output_ << "  room " << rounded(next->frame->y - row.frame->y - row.frame->height);
    }
    output_ << "  " << shown(row.text) << '\n';
  }

  void writeCandidates() {
    const auto candidates = rowCandidates(survey_);
    output_ << "\nOf " << counted(found_.elements.size(), "element", "elements") << ' ';
    if (candidates.empty()) {
      output_ << "no three are alike and one below the other, as rows are.\n";
      return;
    }
    output_ << "these could be rows:\n";
    const std::size_t count = std::min(candidates.size(), mostCandidates);
    for (std::size_t i = 0; i < count; ++i) writeCandidate(candidates[i]);
    if (hasRows(found_)) return;
    const auto usable = std::ranges::find_if(
        candidates, [](const auto& candidate) { return !candidate.view.isEmpty(); });
    if (usable == candidates.end()) return;
    output_ << "\nA description to begin with, for "
            << (usable == candidates.begin() ? "the first of them" : "one of them") << ":\n\n"
            << draftDescription(*usable, window_.names, found_.page);
  }

  void writeCandidate(const RowCandidate& candidate) {
    // The first one's traits, without its text.
    ElementTraits traits = survey_[candidate.members.front()].traits;
    traits.name.clear();
    output_ << "\n  " << candidate.members.size() << " times " << traitsText(traits) << '\n';
    for (std::size_t i = 0; i < std::min(candidate.members.size(), mostSamples); ++i) {
      output_ << "      " << shown(survey_[candidate.members[i]].text) << '\n';
    }
    output_ << "    in\n";
    auto around = survey_[candidate.members.front()].parent;
    for (std::size_t i = 0; around != 0 && i < mostAround; ++i) {
      output_ << "      " << traitsText(survey_[*around].traits) << '\n';
      around = survey_[*around].parent;
    }
    if (around == 0) output_ << "      the " << (found_.page.empty() ? "window\n" : "page\n");
  }

  const FrontWindow& window_;
  const WindowExplanation& found_;
  const ElementSurvey survey_;
  std::ostream& output_;
};

}  // namespace

bool hasRows(const WindowExplanation& explanation) {
  const ExplainedView* const view = counting(explanation);
  return view != nullptr && std::ranges::any_of(view->rows, isTaken);
}

void showWindow(const FrontWindow& window, const WindowExplanation& explanation,
                std::ostream& output) {
  Report(window, explanation, output).write();
}

}  // namespace vellora
