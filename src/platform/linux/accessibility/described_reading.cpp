#include "platform/linux/accessibility/described_reading.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

#include "platform/linux/accessibility/attribute_mapping.h"
#include "platform/linux/accessibility/content_placement.h"
#include "platform/linux/accessibility/program_registry.h"
#include "platform/linux/accessibility/surface_search.h"

namespace vellora {

namespace {

// The view is looked for anew after so many times as long as what often changes is believed, and
// everything after so many.
constexpr int memoriesOfASearch = 5;
constexpr int memoriesOfEverything = 60;

// A page that has just come may not be complete yet: so long it is looked through more often.
constexpr Steady::duration youth = std::chrono::seconds(3);
constexpr Steady::duration memoryInYouth = std::chrono::milliseconds(250);

// A search that takes longer than this begins again.
constexpr Steady::duration longestSearch = std::chrono::seconds(10);

// More elements than this are not worth their room.
constexpr std::size_t mostRemembered = 20000;

// The window, the title's element and the view.
constexpr std::size_t elementsBesideRows = 3;

// Lists of children whose length is asked in each reading.
constexpr std::size_t mostCounted = 2;

// Volleys for rows that have come into sight, and searches, in one reading.
constexpr int mostVolleys = 8;
constexpr int mostSearches = 3;

bool has(const Answer<std::uint64_t>& states, unsigned state) {
  return (states.value.value_or(0) >> state & 1U) != 0;
}

bool isThere(const std::optional<AccessibleExtents>& extents) {
  return extents && extents->width > 0 && extents->height > 0;
}

AccessibleExtents intersection(const AccessibleExtents& a, const AccessibleExtents& b) {
  const std::int32_t x = std::max(a.x, b.x);
  const std::int32_t y = std::max(a.y, b.y);
  const std::int64_t width = std::min(a.right(), b.right()) - x;
  const std::int64_t height = std::min(a.bottom(), b.bottom()) - y;
  const auto side = [](std::int64_t length) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(length, 0, INT32_MAX));
  };
  return {x, y, side(width), side(height)};
}

class DescribedReading {
 public:
  DescribedReading(BusConnection& bus, MediaPlayers& players, DescribedMemory& memory,
                   const PlayerWindow& window, Steady::duration longestMemory,
                   const ReadingLimits& limits)
      : bus_(bus),
        players_(players),
        memory_(memory),
        window_(window),
        longestMemory_(longestMemory),
        limits_(limits),
        begin_(Steady::now()) {}

  std::optional<DescribedLayout> read() {
    if (memory_.facts && facts().size() > mostRemembered) {
      memory_ = DescribedMemory(memory_.process);
    }
    if (!reach() && (memory_.facts || !find())) return std::nullopt;
    track_ = players_.playerOf(window_.process, begin_ + listing());
    forgetOld();
    askMoving();
    search();
    askSurface();
    askRows();
    if (!memory_.last.frame) return std::nullopt;
    return layout();
  }

 private:
  ElementFacts& facts() { return *memory_.facts; }
  FoundView* view() { return memory_.last.view ? &*memory_.last.view : nullptr; }
  Steady::duration listing() const { return steady(static_cast<double>(limits_.messagingTimeout)); }

  bool reach();
  bool find();
  void forgetOld();
  void askMoving();
  SearchTerms terms();
  void search();
  bool pass();
  void take(SearchResult result);
  void noteCounts();
  void askSurface();
  void askRows();
  void tellRows(const std::vector<std::size_t>& rows);
  AccessibleExtents sight();
  DescribedLayout layout();

  BusConnection& bus_;
  MediaPlayers& players_;
  DescribedMemory& memory_;
  const PlayerWindow& window_;
  const Steady::duration longestMemory_;
  const ReadingLimits& limits_;
  const Steady::time_point begin_;
  std::optional<MediaTrack> track_;
  std::optional<SurfacePlacement> surface_;
};

// Asks the window that was found last for its state, before all else: a program that hangs gets no
// more questions than that. False when there is none to ask, or it does not answer; a program that
// is gone is forgotten.
bool DescribedReading::reach() {
  if (!memory_.facts) return false;
  bus_.setPatientPeer(facts().program());
  facts().setDeadline(begin_ + steady(limits_.seconds));
  const ElementIndex probe = memory_.last.frame.value_or(memory_.root);
  ElementList moving{probe};
  if (view() && view()->document) moving.push_back(*view()->document);
  facts().forgetMoment(moving);
  memory_.frames.begin();
  const Answer<std::uint64_t>& states = facts().states(probe);
  facts().exchange();
  if (states.value) {
    const bool isActive = has(states, AtspiState::active);
    if (std::exchange(memory_.wasActive, isActive) && !isActive) forgetEverything(memory_);
    return true;
  }
  if (states.isTold()) memory_ = DescribedMemory(memory_.process);
  return false;
}

bool DescribedReading::find() {
  auto found = findProgram(bus_, memory_.process, begin_ + listing());
  if (!found) return false;
  bus_.setPatientPeer(found->root.bus);
  memory_.facts = std::make_unique<ElementFacts>(bus_, found->root.bus);
  memory_.root = facts().intern(std::move(found->root));
  memory_.lookedAgain = memory_.lookedAnew = memory_.lookedAfresh = begin_;
  facts().setDeadline(begin_ + steady(limits_.seconds));
  return true;
}

void DescribedReading::forgetOld() {
  std::string played = track_ ? track_->title + "\n" + track_->artist : std::string();
  const bool isOtherSong = std::exchange(memory_.played, played) != played;
  const auto age = begin_ - memory_.lookedAnew;
  const auto oldest = longestMemory_ * memoriesOfASearch;
  const bool isOld = begin_ - memory_.lookedAfresh >= longestMemory_ * memoriesOfEverything;
  if (memory_.isSearching ? age >= std::max(oldest, longestSearch) : isOld) {
    memory_.lookedAgain = memory_.lookedAnew = memory_.lookedAfresh = begin_;
    return forgetEverything(memory_);
  }
  if (memory_.isSearching) return;
  if (age >= oldest) {
    memory_.lookedAgain = memory_.lookedAnew = begin_;
    return view() ? forgetView(memory_) : forgetEverything(memory_);
  }
  if (!view() && !memory_.last.page) forgetPages(memory_);
  if (isOtherSong && view()) {
    // Another song's lines, perhaps in the same elements.
    for (const FoundRow& row : view()->rows) forgetText(memory_, row.textElement);
  }
  const bool isYoung = !view() && begin_ - memory_.pageShown < youth;
  const auto longest = isYoung ? std::min(memoryInYouth, longestMemory_) : longestMemory_;
  if (isOtherSong || begin_ - memory_.lookedAgain >= longest) {
    memory_.lookedAgain = begin_;
    forgetChanging(memory_);
  }
}

// All that moves, in one volley: as the last reading left it. Whatever it contradicts is looked for
// again.
void DescribedReading::askMoving() {
  if (!memory_.last.frame) return;
  facts().extents(*memory_.last.frame);
  if (!view()) return;
  if (view()->document) {
    facts().states(*view()->document);
    facts().extents(*view()->document);
  }
  const Answer<AccessibleExtents>& place = facts().extents(view()->view);
  facts().extents(view()->viewport);
  for (std::size_t i = 0; i < memory_.childCounts.size(); ++i) {
    facts().childCount(view()->lookedThrough[i]);
  }
  for (const ElementIndex element : view()->titleElements) forgetText(memory_, element);
  askChanging(memory_);
  const auto planned = memory_.frames.wanted(memory_.sight);
  for (const std::size_t row : planned) askFrame(facts(), view()->rows[row]);
  facts().exchange();

  const bool isViewGone = place.isTold() && !isThere(place.value);
  const auto& states =
      view()->document ? facts()[*view()->document].states : Answer<std::uint64_t>();
  const bool isPageGone = states.isTold() && !has(states, AtspiState::showing);
  if (isViewGone || isPageGone) {
    forgetEverything(memory_);
    memory_.last.view.reset();
    memory_.frames = {};
    return;
  }
  tellRows(planned);
  for (std::size_t i = 0; i < memory_.childCounts.size(); ++i) {
    const auto& count = facts()[view()->lookedThrough[i]].childCount;
    if (count.isTold() && count.value != memory_.childCounts[i]) forgetRows(memory_);
  }
}

// What a row is asked: where it is. One that does not tell has given its place to another; one that
// has moved by itself may have another text.
void DescribedReading::tellRows(const std::vector<std::size_t>& rows) {
  for (const std::size_t row : rows) {
    const auto& extents = knownFrame(facts(), view()->rows[row]);
    if (!extents.isTold()) continue;
    if (!extents.value && memory_.frames.at(row)) forgetRows(memory_);
    memory_.frames.tell(row, extents.value);
  }
  memory_.frames.moveOthers();
  for (const std::size_t row : memory_.frames.disturbed()) {
    if (std::ranges::binary_search(rows, row)) {
      forgetText(memory_, view()->rows[row].textElement);
    }
  }
}

// On which terms a search is made now.
SearchTerms DescribedReading::terms() {
  SearchTerms terms;
  terms.hasMediaPlayer = track_.has_value();
  terms.descriptions = window_.descriptions;
  if (memory_.last.frame) terms.frameStates = facts()[*memory_.last.frame].states.value;
  if (view() && view()->document) terms.pageStates = facts()[*view()->document].states.value;
  return terms;
}

void DescribedReading::search() {
  if (memory_.settled && *memory_.settled == terms()) return;
  for (int i = 0; i < mostSearches; ++i) {
    const std::string title = view() ? view()->title : std::string();
    const bool hadView = view() != nullptr;
    if (!pass()) return;
    if (!hadView || !view() || view()->title == title) return;
    for (const FoundRow& row : view()->rows) forgetText(memory_, row.textElement);
  }
}

// Runs the search until it asks nothing more, or the time is over; true when it came to its end.
bool DescribedReading::pass() {
  const auto elements = static_cast<std::size_t>(std::max(limits_.elements, 0));
  const std::size_t mostRows = elements - std::min(elements, elementsBesideRows);
  ViewSearch search(facts(), memory_.root, window_, track_.has_value(), mostRows);
  SearchResult result;
  do {
    result = search.pass();
  } while (facts().exchange());
  memory_.isSearching = !result.isFinished;
  if (result.isFinished) take(std::move(result));
  return !memory_.isSearching;
}

void DescribedReading::take(SearchResult result) {
  std::map<ElementIndex, std::size_t> numbers;
  if (view()) {
    for (std::size_t i = 0; i < view()->rows.size(); ++i) {
      numbers.emplace(view()->rows[i].frameElement, i);
    }
  }
  std::vector<std::optional<std::size_t>> old;
  if (result.view) {
    for (const FoundRow& row : result.view->rows) {
      const auto number = numbers.find(row.frameElement);
      old.push_back(number == numbers.end() ? std::nullopt : std::optional(number->second));
    }
  }
  memory_.frames.arrange(old);
  if (result.page != memory_.last.page || result.address != memory_.last.address) {
    memory_.pageShown = begin_;
  }
  memory_.last = std::move(result);
  if (memory_.last.frame) {
    memory_.wasActive = has(facts().states(*memory_.last.frame), AtspiState::active);
  }
  memory_.settled = terms();
}

// Where the window is, for a program that does not know it. Most windows tell at once.
void DescribedReading::askSurface() {
  if (!memory_.last.frame || !window_.surfaces) return;
  do {
    surface_ = findSurface(facts(), *memory_.last.frame, window_);
  } while (facts().exchange());
}

// The frames of what can be seen, in volleys until no row in sight is left out.
void DescribedReading::askRows() {
  memory_.childCounts.clear();
  if (!memory_.last.frame) return;
  facts().extents(*memory_.last.frame);
  if (!view()) {
    facts().exchange();
    return;
  }
  facts().extents(view()->view);
  facts().extents(view()->viewport);
  if (view()->document) facts().extents(*view()->document);
  const std::size_t counted = std::min(view()->lookedThrough.size(), mostCounted);
  for (std::size_t i = 0; i < counted; ++i) facts().childCount(view()->lookedThrough[i]);
  facts().exchange();
  memory_.sight = sight();
  for (int i = 0; i < mostVolleys; ++i) {
    const auto wanted = memory_.frames.wanted(memory_.sight);
    if (wanted.empty()) break;
    for (const std::size_t row : wanted) askFrame(facts(), view()->rows[row]);
    if (!facts().exchange()) break;
    tellRows(wanted);
  }
  for (std::size_t i = 0; i < counted; ++i) {
    const auto& count = facts()[view()->lookedThrough[i]].childCount.value;
    if (!count) break;
    memory_.childCounts.push_back(*count);
  }
}

// What the page shows of the viewport, in the toolkit's pixels.
AccessibleExtents DescribedReading::sight() {
  const AccessibleExtents viewport =
      facts()[view()->viewport].extents.value.value_or(AccessibleExtents());
  if (!view()->document) return viewport;
  const auto& page = facts()[*view()->document].extents.value;
  return isThere(page) ? intersection(viewport, *page) : viewport;
}

DescribedLayout DescribedReading::layout() {
  DescribedLayout result;
  result.isIconified = has(facts()[*memory_.last.frame].states, AtspiState::iconified);
  const auto& frame = facts()[*memory_.last.frame].extents.value;
  if (!isThere(frame)) return result;
  if (window_.surfaces && !surface_) return result;
  const auto page = view() && view()->document ? facts()[*view()->document].extents.value
                                               : std::optional<AccessibleExtents>();
  const ContentPlacement placement(*frame, page, window_, surface_);
  result.window = placement.window();
  if (track_) result.title = trackTitle(*track_);
  if (!view()) return result;
  result.hasView = true;
  if (!view()->description->lyrics->title.isEmpty()) result.title = view()->title;
  if (isThere(memory_.sight)) result.viewport = placement.place(memory_.sight);
  for (std::size_t i = 0; i < view()->rows.size(); ++i) {
    const auto& extents = memory_.frames.at(i);
    if (isThere(extents)) result.rows.push_back({view()->rows[i].text, placement.place(*extents)});
  }
  return result;
}

}  // namespace

std::optional<DescribedLayout> readDescribed(BusConnection& bus, MediaPlayers& players,
                                             DescribedMemory& memory, const PlayerWindow& window,
                                             Steady::duration longestMemory,
                                             const ReadingLimits& limits) {
  return DescribedReading(bus, players, memory, window, longestMemory, limits).read();
}

}  // namespace vellora
