#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/linux/accessibility/accessible_store.h"

namespace vellora {

// Where the rows of a view are, of which most are out of sight and need not be asked: those move as
// the ones in sight do. Rows are numbered in the page's order, from 0. Extents are those of the
// toolkit.
class RowFrames {
 public:
  // As many rows as before keep their places, as their old numbers say; nothing: a new row.
  void arrange(const std::vector<std::optional<std::size_t>>& oldNumbers);

  // Has all places be asked again.
  void forget();

  // Begins a reading: all places are those of the last one.
  void begin();

  // The rows that have to be asked yet so that each row inside `viewport` is known, with one on
  // each side; empty when that is so. All rows where they are not one below the other.
  std::vector<std::size_t> wanted(const AccessibleExtents& viewport) const;

  // What was answered; nothing: the row has no place.
  void tell(std::size_t row, const std::optional<AccessibleExtents>& extents);

  // After a volley was told: rows that were not asked move with the nearest one that was.
  void moveOthers();

  // Rows whose distance to their neighbours, or whose size, is another than in the last reading.
  std::vector<std::size_t> disturbed() const;

  std::size_t size() const { return rows_.size(); }
  // As far as known; estimated where it was not asked in this reading.
  const std::optional<AccessibleExtents>& at(std::size_t row) const { return rows_[row].now; }

 private:
  struct Row {
    std::optional<AccessibleExtents> before;  // of the last reading
    std::optional<AccessibleExtents> now;
    bool isTold = false;  // in this reading
  };
  bool isDownwards() const;

  std::vector<Row> rows_;
};

}  // namespace vellora
