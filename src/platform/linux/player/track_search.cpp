#include "platform/linux/player/track_search.h"

#include <algorithm>
#include <vector>

#include "base/text.h"
#include "platform/linux/player/player_state.h"

namespace vellora {
namespace {

constexpr const char* trackList = "org.mpris.MediaPlayer2.TrackList";

std::string withoutCase(std::string_view text) {
  if (text.find('\0') != text.npos) return std::string(text);  // where GLib's texts end
  const auto length = static_cast<gssize>(text.size());
  // Decomposed first: a composed capital may fold to several characters.
  const GCharPtr decomposed(g_utf8_normalize(text.data(), length, G_NORMALIZE_NFD));
  if (!decomposed) return std::string(text);  // not UTF-8, equal to itself only
  const GCharPtr folded(g_utf8_casefold(decomposed.get(), -1));
  return folded.get();
}

std::vector<PlayerTrack> readTrackList(PlayerRequest& request) {
  const auto listed = request.tryCall("org.freedesktop.DBus.Properties", "Get",
                                      g_variant_new("(ss)", trackList, "Tracks"), "(v)");
  if (!listed) return {};
  const GVariantPtr boxed(g_variant_get_child_value(listed.get(), 0));
  const GVariantPtr ids(g_variant_get_variant(boxed.get()));
  if (g_variant_is_of_type(ids.get(), G_VARIANT_TYPE_OBJECT_PATH_ARRAY) == FALSE) return {};
  const auto described = request.tryCall(trackList, "GetTracksMetadata",
                                         g_variant_new("(@ao)", ids.get()), "(aa{sv})");
  if (!described) return {};
  const GVariantPtr list(g_variant_get_child_value(described.get(), 0));
  std::vector<PlayerTrack> tracks;
  for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
    const GVariantPtr metadata(g_variant_get_child_value(list.get(), i));
    auto track = readTrack(metadata.get());
    if (!track.id.empty()) tracks.push_back(std::move(track));
  }
  return tracks;
}

}  // namespace

bool scriptTextsEqual(std::string_view a, std::string_view b) {
  return textEquals(withoutCase(a), withoutCase(b));
}

std::optional<std::string> findTrack(PlayerRequest& request, std::string_view title,
                                     std::string_view artist) {
  auto tracks = readTrackList(request);
  std::erase_if(tracks, [&](const auto& track) { return !scriptTextsEqual(track.title, title); });
  if (tracks.empty()) return std::nullopt;
  const auto exact = std::ranges::find_if(
      tracks, [&](const auto& track) { return scriptTextsEqual(track.artist, artist); });
  return exact != tracks.end() ? exact->id : tracks.front().id;
}

}  // namespace vellora
