#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/text.h"
#include "exchange/records/records.h"
#include "matching/track_match_memory.h"
#include "matching/translation_index.h"
#include "music/music_layout.h"
#include "platform/caption_painter.h"
#include "platform/panel.h"
#include "platform/workspace.h"
#include "render/caption_view.h"

namespace vellora {

// The status lines with which a composition ends.
struct CompositionMessages {
  static constexpr std::string_view noLyrics = "Open Music’s Now Playing view and show Lyrics";
  static constexpr std::string_view otherSong = "Waiting for translations for this song";
  static constexpr std::string_view noRoom =
      "No matching rows with room below them — try the alignment slider";
  static constexpr std::string_view followingPrefix = "Following Music • ";
  static constexpr std::string_view followingSuffix = " translated rows";
};

// The measures of the composition. Lengths are points.
struct CompositionStyle {
  static constexpr double fontScale = 0.65;  // applied to the snapshot's font size
  static constexpr double smallestFont = 12;
  static constexpr double largestFont = 32;
  static constexpr double heightCap = 2.6;  // of the text, in font sizes
  static constexpr double padding = 8;      // added to the text's height
  static constexpr double measuringReserve = 44;
  static constexpr double smallestMeasuringWidth = 80;
  static constexpr double measuringHeight = 1000;
};

// Size of the captions' font for a snapshot's font size; 12 for what is not a number.
double captionFontSize(double snapshotFontSize);
// The most height that a caption's text gets at that font size, a whole number.
double captionHeightCap(double fontSize);

// Row text as read from the player → its translation; empty where the row has none.
using TranslationCache = std::unordered_map<std::string, std::string, TextHash, TextEqual>;

// What a composition works on; all of it belongs to the controller.
struct CompositionFields {
  Panel& panel;
  CaptionView& canvas;
  Workspace& workspace;
  CaptionPainter& painter;                             // measures, and is told the translation
  OverlayLines& lastLines;                             // the lines for which the next two hold
  std::shared_ptr<const TranslationIndex>& lineIndex;  // of `lastLines`; null: of none
  TranslationCache& translations;
  TrackMatchMemory& trackMatch;
  const PreparedIndex& prepared;  // taken where it is of the snapshot's lines
};

// Turns one reading of the player's window and a snapshot into captions: fills the canvas, places
// the panel over the window and, where `showPanel` is true, shows it; hides it when there is
// nothing to show, and then leaves the canvas as it was. The result is the status line. Main
// thread; there are no errors.
std::string render(const CompositionFields& fields, const std::optional<MusicLayout>& layout,
                   const OverlaySnapshot& snapshot, bool showPanel = true);

}  // namespace vellora
