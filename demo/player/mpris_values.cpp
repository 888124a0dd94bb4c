#include "player/mpris_values.h"

#include <string>

#include "playback/track_id.h"

namespace vellora::demo {
namespace {

const char* statusName(Playback::Status status) {
  switch (status) {
    case Playback::Status::playing:
      return "Playing";
    case Playback::Status::paused:
      return "Paused";
    case Playback::Status::stopped:
      break;
  }
  return "Stopped";
}

}  // namespace

GVariant* rootProperty(std::string_view name) {
  if (name == "Identity") return g_variant_new_string("Music (stand-in)");
  if (name == "DesktopEntry") return g_variant_new_string("com.apple.Music");
  if (name == "CanQuit" || name == "CanRaise" || name == "HasTrackList") {
    return g_variant_new_boolean(TRUE);
  }
  if (name == "SupportedUriSchemes" || name == "SupportedMimeTypes") {
    return g_variant_new_strv(nullptr, 0);
  }
  return nullptr;
}

GVariant* playerProperty(const Playback& playback, std::string_view name) {
  if (name == "PlaybackStatus") return g_variant_new_string(statusName(playback.status()));
  if (name == "Rate") return g_variant_new_double(playback.rate());
  if (name == "Volume") return g_variant_new_double(playback.volume());
  if (name == "Position") return g_variant_new_int64(microseconds(playback.position()));
  if (name == "MinimumRate") return g_variant_new_double(Playback::minimumRate);
  if (name == "MaximumRate") return g_variant_new_double(Playback::maximumRate);
  if (name == "Metadata") return trackMetadata(playback, playback.index());
  if (name.substr(0, 3) == "Can") return g_variant_new_boolean(TRUE);
  return nullptr;
}

GVariant* trackListProperty(const Playback& playback, std::string_view name) {
  if (name == "CanEditTracks") return g_variant_new_boolean(FALSE);
  if (name != "Tracks") return nullptr;
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("ao"));
  for (std::size_t i = 0; i < playback.songs().size(); ++i) {
    g_variant_builder_add(&builder, "o", trackId(i).c_str());
  }
  return g_variant_builder_end(&builder);
}

GVariant* trackMetadata(const Playback& playback, std::size_t index) {
  const Song& song = playback.songs()[index];
  const char* artists[] = {song.artist.c_str(), nullptr};
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  const auto add = [&builder](const char* key, GVariant* value) {
    g_variant_builder_add(&builder, "{sv}", key, value);
  };
  add("mpris:trackid", g_variant_new_object_path(trackId(index).c_str()));
  add("mpris:length", g_variant_new_int64(microseconds(song.length)));
  add("xesam:title", g_variant_new_string(song.title.c_str()));
  add("xesam:artist", g_variant_new_strv(artists, 1));
  add("xesam:album", g_variant_new_string(song.album.c_str()));
  return g_variant_builder_end(&builder);
}

}  // namespace vellora::demo
