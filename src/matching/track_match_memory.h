#pragma once

#include <string>
#include <string_view>

namespace vellora {

// OverlayMatching::trackMatches for one who asks about the same texts again and again: the answer
// is worked out anew only when one of the three is other than the last time. A plain value; one
// thread at a time.
class TrackMatchMemory {
 public:
  // The same as OverlayMatching::trackMatches(description, title, artist).
  bool matches(std::string_view description, std::string_view title, std::string_view artist);

 private:
  // Texts without characters match nothing.
  std::string description_;
  std::string title_;
  std::string artist_;
  bool matches_ = false;
};

}  // namespace vellora
