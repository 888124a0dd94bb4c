#include "platform/linux/accessibility/row_frames.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace vellora {

namespace {

AccessibleExtents moved(AccessibleExtents extents, const AccessibleExtents& from,
                        const AccessibleExtents& to) {
  const auto shift = [](std::int32_t value, std::int32_t before, std::int32_t after) {
    const std::int64_t result = std::int64_t{value} + after - before;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(result, INT32_MIN, INT32_MAX));
  };
  extents.x = shift(extents.x, from.x, to.x);
  extents.y = shift(extents.y, from.y, to.y);
  return extents;
}

}  // namespace

void RowFrames::arrange(const std::vector<std::optional<std::size_t>>& oldNumbers) {
  std::vector<Row> rows(oldNumbers.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (oldNumbers[i]) rows[i] = rows_[*oldNumbers[i]];
  }
  rows_ = std::move(rows);
}

void RowFrames::begin() {
  for (Row& row : rows_) {
    row.before = row.now;
    row.isTold = false;
  }
}

void RowFrames::forget() {
  for (Row& row : rows_) row = {};
}

bool RowFrames::isDownwards() const {
  const Row* last = nullptr;
  for (const Row& row : rows_) {
    if (!row.now) continue;
    if (last != nullptr && row.now->y < last->now->y) return false;
    last = &row;
  }
  return true;
}

std::vector<std::size_t> RowFrames::wanted(const AccessibleExtents& viewport) const {
  // Of the rows with a place those that are not above the viewport or below it, and the next ones.
  std::size_t begin = 0;
  std::size_t end = rows_.size();
  if (isDownwards()) {
    for (std::size_t i = 0; i < end; ++i) {
      if (!rows_[i].now) continue;
      if (rows_[i].now->bottom() <= viewport.y) begin = i;
      if (rows_[i].now->y >= viewport.bottom()) end = i + 1;
    }
  }
  std::vector<std::size_t> result;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const bool isNear = i >= begin && i < end;
    if (!rows_[i].isTold && (isNear || !rows_[i].now)) result.push_back(i);
  }
  return result;
}

void RowFrames::tell(std::size_t row, const std::optional<AccessibleExtents>& extents) {
  rows_[row].now = extents;
  rows_[row].isTold = true;
}

void RowFrames::moveOthers() {
  std::vector<std::size_t> told;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i].isTold && rows_[i].before && rows_[i].now) told.push_back(i);
  }
  if (told.empty()) return;
  std::size_t next = 0;  // in `told`: the first at or after the row
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (next < told.size() && told[next] < i) ++next;
    Row& row = rows_[i];
    if (row.isTold || !row.before) continue;
    const bool isBeforeNearer =
        next == told.size() || (next > 0 && i - told[next - 1] <= told[next] - i);
    const Row& nearest = rows_[told[isBeforeNearer ? next - 1 : next]];
    row.now = moved(*row.before, *nearest.before, *nearest.now);
  }
}

std::vector<std::size_t> RowFrames::disturbed() const {
  std::vector<std::size_t> result;
  std::optional<std::size_t> last;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const Row& row = rows_[i];
    if (!row.isTold || !row.before || !row.now) continue;
    const bool isResized =
        row.now->width != row.before->width || row.now->height != row.before->height;
    bool isApart = false;
    if (last) {
      const Row& other = rows_[*last];
      const AccessibleExtents together = moved(*row.before, *other.before, *other.now);
      isApart = together.x != row.now->x || together.y != row.now->y;
    }
    if (isResized || isApart) result.push_back(i);
    last = i;
  }
  return result;
}

}  // namespace vellora
