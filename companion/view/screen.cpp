#include "companion/view/screen.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include <fmt/format.h>

#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "companion/view/text_width.h"

namespace vellora::companion {
namespace {

constexpr int shortestBar = 6;
constexpr const char* songKeys =
    "space pause  np track  ←→ seek  [] time  fF lyrics  tT translation";
constexpr const char* captionKeys = "↑↓ offset  +- size  c captions  q quit";

std::string titleOf(const ViewState& state) {
  if (!state.track) return "Nothing plays that is told of";
  if (state.track->artist.empty()) return state.track->title;
  return state.track->title + " — " + state.track->artist;
}

// What a user can do where there is nothing to show.
std::vector<ScreenLine> hints(const ViewState& state) {
  if (state.reading) {
    return {{"The folder is being read: " + counted(state.songsInLibrary, "song") + " so far.",
             Style::plain}};
  }
  if (!state.track) {
    return {{state.hearsPlayers ? "Waiting for a player, or the overlay. Start that with"
                                : "Waiting for the overlay. Start it with",
             Style::plain},
            {"vellora --snapshot " + state.snapshot.string(), Style::strong},
            {"or start this program with --overlay, and the player.", Style::plain}};
  }
  return {
      {"No lyrics of this song in the folder (" + std::to_string(state.songsInLibrary) +
           " songs are).",
       Style::plain},
      {"They may be called “Artist - Title.lrc”, or name it in [ti:…] and [ar:…].", Style::plain}};
}

std::string settingsOf(const ViewState& state) {
  const CaptionSettings& settings = state.settings;
  std::string text =
      fmt::format("captions {}  size {:g}  offset {:+g}", settings.shown ? "on" : "off",
                  settings.fontSize, settings.verticalOffset);
  if (state.shift != 0) text.append("  lyrics ").append(shiftText(state.shift));
  return text;
}

// What the overlay says, and who tells what plays where it does not.
std::string overlayOf(const ViewState& state) {
  const std::string status =
      "overlay: " + (state.overlay.empty() ? std::string("no status yet") : state.overlay);
  if (state.player.empty()) return status;
  const std::string told = cleaned(state.player) + " itself tells what plays";
  return state.overlay.empty() ? told + "; no overlay runs" : told + "; " + status;
}

// The sung line in the middle, and as many about it as there is room for.
std::vector<ScreenLine> lyricsOf(const ViewState& state, std::size_t rows) {
  const std::vector<SongLine>& lines = state.song->song.lines;
  std::vector<ScreenLine> all;
  std::size_t focus = 0;  // the row of the sung line
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const bool sung = state.line == i;
    if (sung) focus = all.size();
    all.push_back({(sung ? "› " : "  ") + lines[i].source, sung ? Style::strong : Style::faint});
    if (!lines[i].reading.empty()) {
      all.push_back({"    " + lines[i].reading, sung ? Style::plain : Style::faint});
    }
    if (lines[i].translation.empty()) continue;
    all.push_back({(lines[i].byProgram ? "  ≈ " : "    ") + lines[i].translation,
                   sung ? Style::plain : Style::faint});
  }
  const std::size_t most = all.size() > rows ? all.size() - rows : 0;
  const std::size_t before = rows > 2 ? (rows - 1) / 2 : 0;
  const std::size_t begin = std::min(focus > before ? focus - before : 0, most);
  all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(begin));
  all.resize(std::min(all.size(), rows));
  return all;
}

}  // namespace

std::string positionBar(const ViewState& state, int columns) {
  if (!state.track) return {};
  std::string begin = (state.track->playing ? "▶ " : "⏸ ") + clockText(state.position);
  if (state.song == nullptr) return fitted(begin, columns);
  const Song& song = state.song->song;
  const double end = song.length.value_or(song.lastTime());
  const std::string total = song.length ? " " + clockText(end) : std::string();
  const int room = columns - textWidth(begin) - 1 - textWidth(total);
  if (!(end > 0) || room < shortestBar) return fitted(begin, columns);
  const double part = std::clamp(state.position / end, 0.0, 1.0);
  const int full = static_cast<int>(std::lround(part * room));
  begin.append(" ");
  for (int i = 0; i < room; ++i) begin.append(i < full ? "━" : "─");
  return begin.append(total);
}

std::string shiftText(int milliseconds) {
  return fmt::format("{:g} s {}", std::abs(milliseconds) / 1000.0,
                     milliseconds > 0 ? "later" : "earlier");
}

std::vector<ScreenLine> screenOf(const ViewState& state, int columns, int rows) {
  if (columns <= 0 || rows <= 0) return {};
  std::vector<ScreenLine> top{{titleOf(state), Style::strong},
                              {positionBar(state, columns), Style::plain}};
  std::vector<ScreenLine> bottom{{state.notice, Style::strong},
                                 {overlayOf(state), Style::plain},
                                 {settingsOf(state), Style::faint},
                                 {songKeys, Style::faint},
                                 {captionKeys, Style::faint}};
  if (!state.elsewhere.empty()) {
    bottom.insert(bottom.begin() + 1, {state.elsewhere, Style::plain});
  }
  const auto room = static_cast<std::size_t>(rows);
  const std::size_t fixed = top.size() + bottom.size();
  if (room > fixed + 2) {
    top.emplace_back();
    bottom.insert(bottom.begin(), ScreenLine());
  }
  const std::size_t taken = top.size() + bottom.size();
  std::vector<ScreenLine> middle;
  if (room > taken) {
    middle = state.song != nullptr ? lyricsOf(state, room - taken) : hints(state);
    middle.resize(room - taken);
  }
  std::vector<ScreenLine> all = std::move(top);
  all.insert(all.end(), middle.begin(), middle.end());
  all.insert(all.end(), bottom.begin(), bottom.end());
  all.resize(std::min(all.size(), room));
  for (ScreenLine& line : all) {
    const std::size_t indent = std::min(line.text.find_first_not_of(' '), line.text.size());
    line.text = fitted(line.text.substr(0, indent) + cleaned(line.text), columns);
  }
  return all;
}

}  // namespace vellora::companion
