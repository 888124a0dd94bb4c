#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/accessibility/element_facts.h"
#include "platform/linux/players/player_description.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

struct FoundRow {
  ElementIndex element;
  ElementIndex frameElement;
  std::int32_t frameCharacters = 0;  // the frame is that of so many; 0: the element's
  ElementIndex textElement;
  std::string text;  // without white space at its ends; never empty
};

// Where a row is: has it asked, or as far as it is known.
const Answer<AccessibleExtents>& askFrame(ElementFacts& facts, const FoundRow& row);
const Answer<AccessibleExtents>& knownFrame(const ElementFacts& facts, const FoundRow& row);

// A description's view in a window. Every fact in it was told.
struct FoundView {
  PlayerDescriptionPtr description;
  std::optional<ElementIndex> document;
  std::string address;  // of the document
  ElementIndex view = 0;
  ElementIndex viewport = 0;
  std::vector<FoundRow> rows;  // in the tree's order
  ElementList silent;          // text elements of rows that have no text, so count as none
  ElementList lookedThrough;   // the view and what is below it without being in a row
  ElementList titleElements;   // that `title` comes from; empty where the description names none
  std::string title;
};

// What a search has come to.
struct SearchResult {
  bool isFinished = false;  // nothing more has to be asked
  std::optional<ElementIndex> frame;
  ElementList documents;             // pages of a browser's window, hidden ones too
  std::optional<ElementIndex> page;  // a browser's page in front
  std::string address;               // its address
  std::optional<FoundView> view;
};

// Looks for the views of a window's descriptions among a program's elements: a function of what is
// known of these, which lines up the questions that it could not do without. Which elements are
// what is said at `LyricsPattern`; of several the first in the tree's order is taken.
class ViewSearch {
 public:
  // `root` is the program's root element. A page is looked through only with `hasMediaPlayer`.
  // `mostRows` is how many rows are taken, the first ones.
  ViewSearch(ElementFacts& facts, ElementIndex root, const PlayerWindow& window,
             bool hasMediaPlayer, std::size_t mostRows)
      : facts_(facts),
        root_(root),
        window_(window),
        hasMediaPlayer_(hasMediaPlayer),
        mostRows_(mostRows) {}

  // One pass over what is known.
  SearchResult pass();

 private:
  // Nothing as long as it is not known.
  std::optional<std::optional<ElementIndex>> frame();
  bool inPages(SearchResult& result);
  bool inWindow(SearchResult& result);
  // True when the description's view was looked for to the end.
  bool look(ElementIndex top, const PlayerDescriptionPtr& description, SearchResult& result);
  std::optional<std::optional<ElementIndex>> findView(ElementIndex top,
                                                      const LyricsPattern& lyrics);
  bool takeRows(const LyricsPattern& lyrics, FoundView& view);
  bool takeRow(const LyricsPattern& lyrics, ElementIndex element, FoundView& view);
  bool takeTitle(ElementIndex top, const LyricsPattern& lyrics, FoundView& view);

  ElementFacts& facts_;
  const ElementIndex root_;
  const PlayerWindow& window_;
  const bool hasMediaPlayer_;
  const std::size_t mostRows_;
};

}  // namespace vellora
