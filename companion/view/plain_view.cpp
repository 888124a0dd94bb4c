#include "companion/view/plain_view.h"

#include <ostream>

#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "companion/view/screen.h"

namespace vellora::companion {

std::string songText(const ViewState& state) {
  if (!state.track) return "nothing plays that the overlay tells of";
  std::string text = state.track->title;
  if (!state.track->artist.empty()) text.append(" — ").append(state.track->artist);
  if (state.song == nullptr && state.reading) {
    return cleaned(text.append(": no lyrics found yet, the folder is still being read"));
  }
  if (state.song == nullptr) return cleaned(text.append(": no lyrics in the folder"));
  const Song& song = state.song->song;
  text.append(": ").append(counted(song.lines.size(), "line")).append(", ");
  text.append(std::to_string(song.translated())).append(" translated");
  if (!state.song->source.empty()) text.append(", from ").append(state.song->source);
  if (state.shift != 0) text.append(", ").append(shiftText(state.shift));
  return cleaned(text);
}

void PlainView::show(const ViewState& state) {
  showSong(state);
  if (state.elsewhere != elsewhere_) {
    elsewhere_ = state.elsewhere;
    if (!elsewhere_.empty()) say(cleaned(elsewhere_));
  }
  if (state.overlay != overlay_) {
    overlay_ = state.overlay;
    if (!overlay_.empty()) say("overlay: " + cleaned(overlay_));
  }
  if (state.notice != notice_) {
    notice_ = state.notice;
    if (!notice_.empty()) say(cleaned(notice_));
  }
  if (state.line == line_) return;
  line_ = state.line;
  if (!line_) return;
  const SongLine& line = state.song->song.lines[*line_];
  std::string text = "[" + clockText(state.position) + "] " + line.source;
  if (!line.reading.empty()) text.append(" — ").append(line.reading);
  if (!line.translation.empty()) {
    text.append(line.byProgram ? " ≈ " : " — ").append(line.translation);
  }
  say(text);
}

void PlainView::showSong(const ViewState& state) {
  std::string text = songText(state);
  if (song_ == text) return;
  song_ = std::move(text);
  line_.reset();
  say(*song_);
  if (state.song == nullptr) return;
  for (const Problem& problem : state.song->song.problems) say("  " + problem.text());
}

void PlainView::say(const std::string& line) { out_ << line << std::endl; }

}  // namespace vellora::companion
