#include "platform/linux/accessibility/view_explanation.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "platform/linux/accessibility/attribute_mapping.h"
#include "platform/linux/accessibility/content_placement.h"
#include "platform/linux/accessibility/element_search.h"
#include "platform/linux/accessibility/program_registry.h"
#include "platform/linux/accessibility/reading_connection.h"
#include "platform/linux/accessibility/surface_search.h"
#include "platform/linux/accessibility/view_search.h"
#include "platform/linux/players/player_descriptions.h"

namespace vellora {

namespace {

// Of each list.
constexpr std::size_t mostCandidates = 200;
constexpr std::size_t mostElements = 2000;
constexpr std::size_t mostRows = 697;

// What a pattern asks and the element has not; empty: it fits. Gives what is known so far.
std::string misfit(const ElementPattern& pattern, const ElementTraits& element) {
  if (fits(pattern, element)) return {};
  ElementPattern part;
  part.roles = pattern.roles;
  if (!fits(part, element)) return "its role is another";
  part = {};
  part.names = pattern.names;
  if (!fits(part, element)) return "its name is another";
  part = {};
  part.classes = pattern.classes;
  if (!fits(part, element)) return "none of its classes fits";
  return "its id is another";
}

// Puts together what is known; what is missing is lined up, so that it is told in a later pass.
class Explainer {
 public:
  Explainer(ElementFacts& facts, ElementIndex root, const PlayerWindow& window,
            const std::optional<MediaTrack>& track)
      : facts_(facts), root_(root), window_(window), track_(track) {}

  WindowExplanation pass() {
    WindowExplanation result;
    result.hasMediaPlayer = track_.has_value();
    if (track_) result.played = trackTitle(*track_);
    result.program = facts_.name(root_).value.value_or(std::string());
    const SearchResult found =
        ViewSearch(facts_, root_, window_, track_.has_value(), mostRows).pass();
    if (!found.frame) {
      result.whyNot = "The program shows no window on the accessibility bus.";
      return result;
    }
    const auto page = found.page ? facts_.extents(*found.page).value : std::nullopt;
    result.frame = explained(*found.frame, 0);
    const auto surface = findSurface(facts_, *found.frame, window_);
    const auto& extents = facts_.extents(*found.frame).value;
    if (extents && (surface || !window_.surfaces)) {
      placement_.emplace(*extents, page, window_, surface);
      result.frame->frame = placement_->window();
    }
    result.page = found.address;
    for (const PlayerDescriptionPtr& description : window_.descriptions) {
      result.views.push_back(explained(description, found));
    }
    const bool isBrowser = std::ranges::any_of(
        window_.descriptions, [](const auto& description) { return description->isPage(); });
    if (isBrowser && !track_) {
      result.whyNot =
          "No media player (MPRIS) belongs to the program: a page is looked through only while one "
          "does. Let the page play.";
    } else if (isBrowser && !found.page) {
      result.whyNot =
          "The program shows no page on the accessibility bus. Start it again: it looks for "
          "accessibility only at its start.";
    }
    if (!isBrowser || (track_ && found.page)) {
      result.elements = around(found.page.value_or(*found.frame));
    }
    return result;
  }

 private:
  ElementTraits traits(ElementIndex element) {
    const auto attributes = facts_.attributes(element).value.value_or(ElementAttributes());
    ElementTraits result{.role = facts_.role(element).value.value_or(0),
                         .name = facts_.name(element).value.value_or(std::string()),
                         .classes = attributes.classes,
                         .id = attributes.id};
    if (result.id.empty()) {
      result.id = facts_.accessibleId(element).value.value_or(std::string());
    }
    return result;
  }

  std::optional<Rect> frameOf(ElementIndex element) {
    return placed(facts_.extents(element).value);
  }

  std::optional<Rect> placed(const std::optional<AccessibleExtents>& extents) const {
    if (!extents || !placement_ || extents->width <= 0 || extents->height <= 0) return std::nullopt;
    return placement_->place(*extents);
  }

  ExplainedElement explained(ElementIndex element, int depth) {
    ElementTraits found = traits(element);
    return {.role = found.role,
            .name = std::move(found.name),
            .classes = std::move(found.classes),
            .id = std::move(found.id),
            .frame = frameOf(element),
            .text = {},
            .depth = depth};
  }

  ExplainedView explained(const PlayerDescriptionPtr& description, const SearchResult& found) {
    ExplainedView view;
    view.description = description;
    const bool isFound = found.view && found.view->description == description;
    if (!description->lyrics) {
      view.whyNot = "It says nothing about the lyrics: the window is read as it is.";
      return view;
    }
    const auto top = description->isPage() ? found.page : found.frame;
    if (!top) {
      view.whyNot = "There is no page to look through.";
    } else if (description->isPage() && !isFound &&
               descriptionsForPage(found.address, {description}).empty()) {
      view.whyNot = "The page has another address.";
    } else {
      const ElementIndex below = isFound ? found.view->document.value_or(*top) : *top;
      takeCandidates(*description->lyrics, below, view);
      const bool fitsOne =
          std::ranges::any_of(view.candidates, [](const auto& one) { return one.whyNot.empty(); });
      if (!isFound) {
        view.whyNot = fitsOne ? "Another one comes before it." : "No element fits [Lyrics].";
      }
    }
    if (isFound) takeView(*description->lyrics, *found.view, view);
    return view;
  }

  void takeCandidates(const LyricsPattern& lyrics, ElementIndex top, ExplainedView& view) {
    findFirst(facts_, top, lyrics.view.roles, [&](ElementIndex element) -> std::optional<bool> {
      if (view.candidates.size() >= mostCandidates) return true;
      ExplainedCandidate candidate{explained(element, 0), misfit(lyrics.view, traits(element))};
      const auto& parent = facts_.parent(element).value;
      if (candidate.whyNot.empty() && !lyrics.container.isEmpty() && parent) {
        const Sought container = climb(facts_, lyrics.container, *parent, top);
        if (container && !*container) candidate.whyNot = "it is in no such container";
      }
      view.candidates.push_back(std::move(candidate));
      return false;
    });
    // Those that miss the least first: a page has hundreds that are only of the role.
    std::ranges::stable_partition(view.candidates,
                                  [](const auto& one) { return one.whyNot.empty(); });
  }

  void takeView(const LyricsPattern& lyrics, const FoundView& found, ExplainedView& view) {
    view.viewport = frameOf(found.viewport);
    if (found.document && view.viewport) {
      const auto page = frameOf(*found.document);
      if (page) view.viewport = view.viewport->intersection(*page);
    }
    view.title = !lyrics.title.isEmpty() ? found.title : track_ ? trackTitle(*track_) : "";
    walk(facts_, found.view, [&](ElementIndex element) {
      if (view.rows.size() >= mostRows) return WalkStep::stop;
      if (!fits(facts_, lyrics.row, element).value_or(false)) return WalkStep::into;
      const auto taken = std::ranges::find(found.rows, element, &FoundRow::element);
      ExplainedCandidate row{explained(element, 0), {}};
      if (taken != found.rows.end()) {
        row.element.text = taken->text;
        row.element.frame = placed(askFrame(facts_, *taken).value);
        if (!row.element.frame) row.whyNot = "it has no frame";
      } else {
        row.whyNot = lyrics.rowText.isEmpty() && lyrics.rowFrame.isEmpty()
                         ? "it has no text"
                         : "it has no text, or not the element that has its text or its frame";
      }
      view.rows.push_back(std::move(row));
      return WalkStep::over;
    });
  }

  // Elements that have a text themselves, and those that these are in.
  std::vector<ExplainedElement> around(ElementIndex top) {
    std::vector<ExplainedElement> result;
    takeAround(top, 0, result);
    return result;
  }

  // Whether the element or something in it has a text.
  bool takeAround(ElementIndex element, int depth, std::vector<ExplainedElement>& list) {
    constexpr int deepest = 60;
    if (list.size() >= mostElements || depth > deepest) return false;
    if (isAround_.size() <= element) isAround_.resize(element + 1, false);
    if (isAround_[element]) return false;
    isAround_[element] = true;
    const std::size_t place = list.size();
    list.push_back(explained(element, depth));
    list.back().text = textOf(facts_, element).value_or(std::string());
    bool hasText = !list.back().text.empty();
    const ElementList children = facts_.children(element).value.value_or(ElementList());
    for (const ElementIndex child : children) {
      hasText = takeAround(child, depth + 1, list) || hasText;
    }
    if (!hasText) list.resize(place);
    return hasText;
  }

  ElementFacts& facts_;
  const ElementIndex root_;
  const PlayerWindow& window_;
  const std::optional<MediaTrack>& track_;
  std::optional<ContentPlacement> placement_;
  std::vector<bool> isAround_;
};

}  // namespace

WindowExplanation explainWindow(const PlayerWindow& window, std::chrono::milliseconds patience) {
  const Steady::time_point deadline = Steady::now() + patience;
  ReadingConnection connection(Steady::duration::zero());
  const auto access = connection.prepare(window.process, patience);
  WindowExplanation result;
  if (!access) {
    result.whyNot = "Accessibility is not switched on in this session.";
    return result;
  }
  auto found = findProgram(access->bus, window.process, deadline);
  if (!found) {
    result.whyNot =
        "The program is not on the accessibility bus. Start it again: some look for accessibility "
        "only at their start.";
    return result;
  }
  access->bus.setPatientPeer(found->root.bus);
  ElementFacts facts(access->bus, found->root.bus);
  const ElementIndex top = facts.intern(std::move(found->root));
  facts.setDeadline(deadline);
  const auto track = connection.mediaPlayers().playerOf(window.process, deadline);
  do {
    result = Explainer(facts, top, window, track).pass();
  } while (facts.exchange());
  if (result.whyNot.empty() && Steady::now() >= deadline) {
    result.whyNot = "The program did not answer in time.";
  }
  return result;
}

}  // namespace vellora
