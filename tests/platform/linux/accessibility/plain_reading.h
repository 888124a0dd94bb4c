#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "music/music_layout.h"
#include "platform/accessibility.h"
#include "platform/clock.h"

namespace vellora {

// Gives every reading the one program that it was made for.
class PlainAccessibility final : public Accessibility {
 public:
  explicit PlainAccessibility(std::shared_ptr<AccessibilityElement> program)
      : program_(std::move(program)) {}
  bool isTrusted() override { return true; }
  void requestTrust() override {}
  std::shared_ptr<AccessibilityElement> applicationElement(std::int32_t, const Player&,
                                                           const ReadingLimits&) override {
    return program_;
  }

 private:
  std::shared_ptr<AccessibilityElement> program_;
};

// A clock that stands still: what is compared is what is found without a deadline.
class StoppedClock final : public Clock {
 public:
  double now() const override { return 0; }
};

// The whole layout as a text, to compare and to show.
inline std::string dump(const std::optional<MusicLayout>& layout) {
  if (!layout) return "no layout";
  const auto text = [](const Rect& rect) {
    return std::to_string(rect.x) + " " + std::to_string(rect.y) + " " +
           std::to_string(rect.width) + " " + std::to_string(rect.height);
  };
  std::string result =
      text(layout->window) + "\n" + text(layout->viewport) + "\n" + layout->title + "\n";
  for (const MusicRow& row : layout->rows) result += row.text + " at " + text(row.frame) + "\n";
  return result;
}

}  // namespace vellora
