#pragma once

#include <cstddef>
#include <string>

namespace vellora {

// What a caption's picture depends on. Where the caption stands is left out on purpose: a caption
// that scrolls keeps its picture. Texts compare by canonical equivalence, numbers numerically, so
// that +0 equals −0 and a key with a NaN equals nothing.
struct ImageKey {
  std::string text;
  double width = 0;   // of the plate, points
  double height = 0;  // of the plate, points
  double font = 0;
  double softness = 0;
  double scale = 0;

  friend bool operator==(const ImageKey& a, const ImageKey& b);
};

// Equal keys have equal hashes.
struct ImageKeyHash {
  std::size_t operator()(const ImageKey& key) const;
};

}  // namespace vellora
