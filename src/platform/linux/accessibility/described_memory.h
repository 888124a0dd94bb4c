#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/element_facts.h"
#include "platform/linux/accessibility/row_frames.h"
#include "platform/linux/accessibility/view_search.h"

namespace vellora {

// What a search depends on beside the facts that are kept.
struct SearchTerms {
  bool hasMediaPlayer = false;
  std::vector<PlayerDescriptionPtr> descriptions;
  std::optional<std::uint64_t> frameStates;  // of the window's element
  std::optional<std::uint64_t> pageStates;   // of the document that the view is in
  bool operator==(const SearchTerms&) const = default;
};

// What one reading of a described player leaves to the next one, over one connection: which program
// it is, what its elements have told, and what the last search came to. One thread at a time.
struct DescribedMemory {
  explicit DescribedMemory(std::int32_t processIdentifier) : process(processIdentifier) {}

  std::int32_t process;
  std::unique_ptr<ElementFacts> facts;  // of the program; nothing: it has to be found
  ElementIndex root = 0;
  bool isSearching = false;           // a search has begun and not come to its end
  Steady::time_point lookedAgain{};   // when what often changes was forgotten last
  Steady::time_point lookedAnew{};    // when the view was
  Steady::time_point lookedAfresh{};  // when everything was
  // On which terms the last search came to its end; nothing where a fact was forgotten since.
  std::optional<SearchTerms> settled;

  SearchResult last;                      // of the last search that came to its end
  Steady::time_point pageShown{};         // since when last.page is another than before
  bool wasActive = false;                 // last.frame
  std::vector<std::int32_t> childCounts;  // of the first of last.view's lookedThrough
  RowFrames frames;                       // of last.view's rows
  AccessibleExtents sight;                // what could be seen of the view
  std::string played;                     // what the media player said then
  std::size_t nextText = 0;               // row whose text is asked again next
};

// Has the texts of an element be asked again.
void forgetText(DescribedMemory& memory, ElementIndex element);

// Has everything be looked for anew.
void forgetEverything(DescribedMemory& memory);

// Has the view be looked for anew, among the elements that there are then: what those say of
// themselves that were looked at and found to be something else stays.
void forgetView(DescribedMemory& memory);

// Has the pages in the window be asked for again: where none shows, one is about to.
void forgetPages(DescribedMemory& memory);

// Has the list of the view's rows be asked again.
void forgetRows(DescribedMemory& memory);

// Has what often changes be asked again: which windows and pages there are, the page's address; of
// a view that is known also the list of its rows, and the texts of those in sight and of some
// others; where none is known which elements there are.
void forgetChanging(DescribedMemory& memory);

// Lines up the questions to what was so forgotten, to have them answered in one volley.
void askChanging(DescribedMemory& memory);

}  // namespace vellora
