#include <cmath>
#include <string>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "render/composition.h"
#include "support/fake_native_view.h"
#include "support/fake_panel.h"
#include "support/fake_workspace.h"

namespace vellora {

namespace {

double coordinate(FuzzInput& input) {
  if (input.below(8) == 0) return input.number();
  return static_cast<double>(input.take<std::int16_t>()) / 4;
}
Rect rectangle(FuzzInput& input) { return rectangleOf(input, coordinate); }

// What is on no screen: a picture of it ends the process, as the design has it.
bool isDrawable(const Rect& rect) {
  return std::fabs(rect.width) < 1e6 && std::fabs(rect.height) < 1e6;
}

}  // namespace

// Readings of any windows, composed one after the other.
void fuzzComposition(std::string_view bytes) {
  FuzzInput input(bytes);
  Log log;
  FakePanel panel(log);
  FakeNativeView view(log);
  FakeWorkspace workspace(log);
  FakePainter painter(log);
  painter.charactersPerLine = 1 + input.below(20);
  CaptionView canvas(painter, view, workspace);
  OverlayLines lastLines;
  std::shared_ptr<const TranslationIndex> index;
  TranslationCache translations;
  TrackMatchMemory trackMatch;
  const PreparedIndex prepared;
  const CompositionFields fields{panel, canvas,       workspace,  painter, lastLines,
                                 index, translations, trackMatch, prepared};
  for (int reading = 0; reading < 6 && !input.isEmpty(); ++reading) {
    OverlaySnapshot snapshot{1, 0, true, "Song", "Artist", coordinate(input), coordinate(input),
                             {}};
    for (std::size_t left = input.below(5); left > 0; --left) {
      snapshot.lines.edit().push_back({std::string(1, static_cast<char>('a' + input.below(5))),
                                       std::string(input.takeBytes(input.below(40)))});
    }
    std::optional<MusicLayout> layout;
    if (input.below(16) > 0) {
      layout = MusicLayout{rectangle(input), rectangle(input), "Song Artist", {}};
      for (std::size_t left = input.below(8); left > 0; --left) {
        layout->rows.push_back(
            {std::string(1, static_cast<char>('a' + input.below(5))), rectangle(input)});
      }
    }
    const std::size_t before = canvas.captions().size();
    panel.visible = false;
    const std::string line = render(fields, layout, snapshot, true);
    const std::string following(CompositionMessages::followingPrefix);
    const std::size_t count = canvas.captions().size();
    require(panel.visible == line.starts_with(following), "a panel that is shown with captions");
    if (!panel.visible) {
      require(count == before, "captions that stay while nothing is shown");
      continue;
    }
    require(count > 0 && count <= layout->rows.size(), "as many captions as rows at most");
    require(line == following + std::to_string(count) +
                        std::string(CompositionMessages::followingSuffix),
            "the status line's number");
    bool drawable = true;
    for (const Caption& caption : canvas.captions()) {
      require(!caption.text.empty(), "a caption's text");
      require(caption.font >= 12 && caption.font <= 32, "a caption's font");
      require(caption.softness >= 0 && caption.softness <= 1, "a caption's softness");
      require(caption.rect.width >= 80, "a caption's width");
      drawable = drawable && isDrawable(caption.rect);
    }
    if (drawable && view.drawFunction) view.drawFunction(view.surface);
    require(canvas.cachedImageCount() <= CaptionStyle::cacheLimit, "as many pictures as are kept");
  }
}

}  // namespace vellora
