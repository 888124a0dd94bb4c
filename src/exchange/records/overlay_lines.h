#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vellora {

// One lyric line of a snapshot.
struct OverlayLine {
  std::string source;       // the line in its own language
  std::string translation;  // shown as the caption

  friend bool operator==(const OverlayLine& a, const OverlayLine& b);
};

// A snapshot's lines, in order: a value that is mostly replaced as a whole. Copies share what they
// hold, so that neither a copy nor the comparison of two copies costs more with more lines. Any
// thread, like a text.
class OverlayLines {
 public:
  OverlayLines() = default;
  OverlayLines(std::vector<OverlayLine> lines)
      : lines_(std::make_shared<const std::vector<OverlayLine>>(std::move(lines))) {}
  OverlayLines(std::initializer_list<OverlayLine> lines)
      : OverlayLines(std::vector<OverlayLine>(lines)) {}

  // Valid as long as these lines or a copy of them are there.
  const std::vector<OverlayLine>& all() const { return lines_ ? *lines_ : none(); }
  operator const std::vector<OverlayLine>&() const { return all(); }

  auto begin() const { return all().begin(); }
  auto end() const { return all().end(); }
  std::size_t size() const { return all().size(); }
  bool empty() const { return all().empty(); }
  const OverlayLine& front() const { return all().front(); }
  const OverlayLine& operator[](std::size_t at) const { return all()[at]; }

  // The same lines for these alone, to be changed until the next copy is made. Costs a copy.
  std::vector<OverlayLine>& edit() {
    auto own = std::make_shared<std::vector<OverlayLine>>(all());
    lines_ = own;
    return *own;
  }

  // Whether both are copies of the same lines.
  bool isSharedWith(const OverlayLines& other) const { return lines_ == other.lines_; }

  // Line by line, by canonical equivalence.
  friend bool operator==(const OverlayLines& a, const OverlayLines& b) {
    return a.isSharedWith(b) || a.all() == b.all();
  }

 private:
  static const std::vector<OverlayLine>& none();

  std::shared_ptr<const std::vector<OverlayLine>> lines_;  // null: none
};

}  // namespace vellora
