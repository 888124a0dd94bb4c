#pragma once

#include <optional>
#include <string_view>

#include "exchange/records/json_tree.h"
#include "exchange/records/records.h"

namespace vellora {

// Decodes what the snapshot's file holds, one text after the other. Whoever keeps a snapshot fresh
// writes another time beside the same lines: lines whose text stands there as it did before are not
// decoded again, and the new record shares them with the old. One thread at a time.
class SnapshotDecoder {
 public:
  // The same as decode<OverlaySnapshot>(now). `before` is the text of the last call, empty at the
  // first.
  std::optional<OverlaySnapshot> decode(std::string_view before, std::string_view now);

 private:
  std::optional<OverlaySnapshot> decodeWhole(std::string_view text);

  OverlayLines lines_;
  JsonPlace place_;  // of the text of `lines_`; empty where there is none
};

}  // namespace vellora
