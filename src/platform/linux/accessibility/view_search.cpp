#include "platform/linux/accessibility/view_search.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/linux/accessibility/attribute_mapping.h"
#include "platform/linux/accessibility/element_search.h"
#include "platform/linux/accessibility/media_players.h"
#include "platform/linux/players/player_descriptions.h"

namespace vellora {

namespace {

constexpr std::size_t mostFrames = 64;
constexpr std::size_t mostDocuments = 64;

bool has(const Answer<std::uint64_t>& states, unsigned state) {
  return (states.value.value_or(0) >> state & 1U) != 0;
}

ElementList firstOf(const Answer<ElementList>& answer, std::size_t most) {
  ElementList list = answer.value.value_or(ElementList());
  list.resize(std::min(list.size(), most));
  return list;
}

}  // namespace

SearchResult ViewSearch::pass() {
  SearchResult result;
  const Sought window = frame();
  if (!window) return result;
  result.frame = *window;
  result.isFinished = !result.frame || (inWindow(result) && (result.view || inPages(result)));
  return result;
}

// Programs list windows that pop up among the others; those are active while they are open.
Sought ViewSearch::frame() {
  const Answer<ElementList>& all = facts_.children(root_);
  if (!all.isTold()) return std::nullopt;
  const ElementList frames = firstOf(all, mostFrames);
  bool isKnown = true;
  std::optional<ElementIndex> active;
  std::optional<ElementIndex> first;
  for (const ElementIndex frame : frames) {
    const Answer<std::uint64_t>& states = facts_.states(frame);
    isKnown = isKnown && states.isTold();
    if (!states.value) continue;
    const Answer<std::uint32_t>& role = facts_.role(frame);
    isKnown = isKnown && role.isTold();
    if (role.value == AtspiRole::window) continue;
    if (!first) first = frame;
    if (!active && has(states, AtspiState::active)) active = frame;
  }
  if (!isKnown) return std::nullopt;
  return Sought(active ? active : first);
}

bool ViewSearch::inWindow(SearchResult& result) {
  for (const PlayerDescriptionPtr& description : window_.descriptions) {
    if (!description->lyrics || description->isPage()) continue;
    if (!look(*result.frame, description, result)) return false;
    if (result.view) return true;
  }
  return true;
}

// A browser keeps the pages of other tabs, too; those do not show. Pages inside a page come after
// it in the tree's order.
bool ViewSearch::inPages(SearchResult& result) {
  const bool mayLook = hasMediaPlayer_ && std::ranges::any_of(window_.descriptions, [](auto& one) {
                         return one->isPage() && one->lyrics;
                       });
  if (!mayLook) return true;
  // Chromium gives its content to whoever asks its window for these.
  if (!facts_.attributes(*result.frame).isTold()) return false;
  auto documents =
      findAll(facts_, *result.frame, {AtspiRole::documentFrame, AtspiRole::documentWeb});
  if (!documents) return false;
  documents->resize(std::min(documents->size(), mostDocuments));
  result.documents = std::move(*documents);
  bool isKnown = true;
  for (const ElementIndex document : result.documents) {
    const Answer<std::uint64_t>& states = facts_.states(document);
    isKnown = isKnown && states.isTold();
    if (!has(states, AtspiState::showing)) continue;
    const Answer<std::string>& address = facts_.address(document);
    isKnown = isKnown && address.isTold();
    if (!isKnown) continue;
    const std::string page = address.value.value_or(std::string());
    if (!result.page) result.address = page;
    if (!result.page) result.page = document;
    for (const auto& description : descriptionsForPage(page, window_.descriptions)) {
      if (!description->lyrics) continue;
      if (!look(document, description, result)) return false;
      if (!result.view) continue;
      result.view->document = document;
      result.view->address = page;
      return true;
    }
  }
  return isKnown;
}

bool ViewSearch::look(ElementIndex top, const PlayerDescriptionPtr& description,
                      SearchResult& result) {
  const LyricsPattern& lyrics = *description->lyrics;
  const Sought view = findView(top, lyrics);
  if (!view) return false;
  if (!*view) return true;
  FoundView found;
  found.description = description;
  found.view = **view;
  found.viewport = found.view;
  bool isKnown = true;
  if (!lyrics.viewport.isEmpty()) {
    const Sought viewport = climb(facts_, lyrics.viewport, found.view, top);
    isKnown = viewport.has_value();
    if (isKnown && *viewport) found.viewport = **viewport;
  }
  isKnown = takeTitle(top, lyrics, found) && isKnown;
  isKnown = takeRows(lyrics, found) && isKnown;
  if (isKnown) result.view = std::move(found);
  return isKnown;
}

Sought ViewSearch::findView(ElementIndex top, const LyricsPattern& lyrics) {
  const auto isView = [&](ElementIndex element) -> std::optional<bool> {
    const auto answer = fits(facts_, lyrics.view, element);
    if (!answer.value_or(false) || lyrics.container.isEmpty()) return answer;
    const Answer<ElementIndex>& parent = facts_.parent(element);
    if (!parent.isTold()) return std::nullopt;
    if (!parent.value) return false;
    const Sought container = climb(facts_, lyrics.container, *parent.value, top);
    if (!container) return std::nullopt;
    return container->has_value();
  };
  return findFirst(facts_, top, lyrics.view.roles, isView);
}

bool ViewSearch::takeRows(const LyricsPattern& lyrics, FoundView& view) {
  bool isKnown = true;
  view.lookedThrough.push_back(view.view);
  const bool isWalked = walk(facts_, view.view, [&](ElementIndex element) {
    if (view.rows.size() >= mostRows_) return WalkStep::stop;
    const auto answer = fits(facts_, lyrics.row, element);
    if (!answer) return WalkStep::unknown;
    if (*answer) {
      isKnown = takeRow(lyrics, element, view) && isKnown;
      return WalkStep::over;
    }
    view.lookedThrough.push_back(element);
    return WalkStep::into;
  });
  return isWalked && isKnown;
}

const Answer<AccessibleExtents>& knownFrame(const ElementFacts& facts, const FoundRow& row) {
  const ElementFact& element = facts[row.frameElement];
  return row.frameCharacters > 0 ? element.textExtents : element.extents;
}

const Answer<AccessibleExtents>& askFrame(ElementFacts& facts, const FoundRow& row) {
  if (row.frameCharacters > 0) return facts.textExtents(row.frameElement, row.frameCharacters);
  return facts.extents(row.frameElement);
}

// A row without the elements that the description names in it, or without a text, is none.
bool ViewSearch::takeRow(const LyricsPattern& lyrics, ElementIndex element, FoundView& view) {
  const auto inside = [&](const ElementPattern& pattern) -> Sought {
    if (pattern.isEmpty()) return Sought(element);
    std::optional<ElementIndex> found;
    const bool isWalked = walk(facts_, element, [&](ElementIndex one) {
      const auto answer = fits(facts_, pattern, one);
      if (!answer) return WalkStep::unknown;
      if (!*answer) return WalkStep::into;
      found = one;
      return WalkStep::stop;
    });
    if (!isWalked) return std::nullopt;
    return Sought(found);
  };
  const Sought textElement = inside(lyrics.rowText);
  const Sought frameElement = lyrics.isFrameOfText ? textElement : inside(lyrics.rowFrame);
  if (!textElement || !frameElement) return false;
  if (!*textElement || !*frameElement) return true;
  const auto text = textOf(facts_, **textElement);
  if (!text) return false;
  if (text->empty()) {
    view.silent.push_back(**textElement);
    return true;
  }
  std::int32_t characters = 0;
  if (lyrics.isFrameOfText) {
    const auto& count = facts_.characterCount(**textElement);
    if (!count.isTold()) return false;
    characters = count.value.value_or(0);
  }
  view.rows.push_back({element, **frameElement, characters, **textElement, *text});
  return true;
}

bool ViewSearch::takeTitle(ElementIndex top, const LyricsPattern& lyrics, FoundView& view) {
  for (const ElementPattern* pattern : {&lyrics.title, &lyrics.artist}) {
    if (pattern->isEmpty()) continue;
    const Sought element = findFirst(facts_, top, pattern->roles,
                                     [&](ElementIndex one) { return fits(facts_, *pattern, one); });
    if (!element) return false;
    if (!*element) continue;
    const auto text = textOf(facts_, **element);
    if (!text) return false;
    view.titleElements.push_back(**element);
    if (text->empty()) continue;
    view.title += view.title.empty() ? *text : titleSeparator + *text;
  }
  return true;
}

}  // namespace vellora
