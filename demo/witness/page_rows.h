#pragma once

#include <optional>
#include <string>

#include "witness/accessible_rows.h"

namespace vellora::witness {

// How to find the lyrics of a page in a browser, by the page's own markup.
struct PageQuery {
  unsigned process = 0;              // of the browser
  std::string view = "lyrics-view";  // the id of the element that scrolls
  std::string rowClass = "row";      // one of the classes of each line's element
  // How many of the units in which the browser gives the frames of a page's elements a point has.
  double unitsPerPoint = 1;
};

// What an accessibility client of its own sees of the page in front of a browser's first window,
// asked one plain question after the other, without what the overlay reads with. Frames in points;
// the viewport is clipped to the window. Rows are in the document's order. The title is empty.
// Chromium keeps a page's elements to itself until a client asks a window of its for attributes:
// that is not done here. Nothing when there is no such page, or when its elements change meanwhile.
std::optional<SeenPlayer> readPage(const PageQuery& query);

}  // namespace vellora::witness
