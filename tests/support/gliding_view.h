#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

#include "render/composition.h"
#include "support/fake_native_view.h"
#include "support/fake_painter.h"
#include "support/fake_panel.h"
#include "support/fake_workspace.h"
#include "support/verse.h"

namespace vellora {

// A window whose view glides, on fakes: all rows move by a bit from one reading to the next, and
// their texts stay.
class GlidingView {
 public:
  explicit GlidingView(std::size_t rows) {
    const auto lines = verse::makeLines(0, 60);
    layout_.window = {0, 30, 1200, 60.0 * static_cast<double>(rows) + 200};
    layout_.viewport = {600, 100, 580, 60.0 * static_cast<double>(rows) + 80};
    layout_.title = "Night Drive — River Band";
    for (std::size_t i = 0; i < rows; ++i) {
      layout_.rows.push_back(
          {lines[i % lines.size()].source, {620, 110 + 60 * static_cast<double>(i), 360, 24}});
    }
  }
  // Composes the captions of the next reading; false where a row has none.
  bool compose() {
    const double step = isDown_ ? -1 : 1;
    isDown_ = !isDown_;
    for (MusicRow& row : layout_.rows) row.frame.y += step;
    render(fields_, layout_, snapshot_);
    log_.clear();
    painter_.measurements.clear();
    return view_.captions().size() == layout_.rows.size();
  }

 private:
  Log log_;
  FakePanel panel_{log_};
  FakePainter painter_{log_};
  FakeNativeView nativeView_{log_};
  FakeWorkspace workspace_{log_};
  CaptionView view_{painter_, nativeView_, workspace_};
  std::remove_reference_t<decltype(CompositionFields::lastLines)> lastLines_;
  std::shared_ptr<const TranslationIndex> lineIndex_;
  TranslationCache translations_;
  TrackMatchMemory trackMatch_;
  PreparedIndex prepared_;
  CompositionFields fields_{panel_,     view_,         workspace_,  painter_, lastLines_,
                            lineIndex_, translations_, trackMatch_, prepared_};
  MusicLayout layout_;
  OverlaySnapshot snapshot_{
      1, 1000, true, "Night Drive", "River Band", 32, 0, verse::makeLines(0, 60)};
  bool isDown_ = false;
};

}  // namespace vellora
