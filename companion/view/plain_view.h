#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "companion/view/view_state.h"

namespace vellora::companion {

// Tells what changes in lines of text, for an output that is no terminal. Takes no keys.
class PlainView : public View {
 public:
  explicit PlainView(std::ostream& out) : out_(out) {}

  void show(const ViewState& state) override;
  double lasts(const ViewState& state) const override { return untilNextLine(state); }
  int input() const override { return -1; }
  std::vector<Wish> take() override { return {}; }

 private:
  void say(const std::string& line);
  void showSong(const ViewState& state);

  std::ostream& out_;
  std::optional<std::string> song_;  // what was said of it last
  std::optional<std::size_t> line_;
  std::string elsewhere_;
  std::string overlay_;
  std::string notice_;
};

// "Title — Artist: 12 lines, 11 translated", or why there is none.
std::string songText(const ViewState& state);

}  // namespace vellora::companion
