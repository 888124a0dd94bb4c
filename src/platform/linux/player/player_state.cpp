#include "platform/linux/player/player_state.h"

namespace vellora {
namespace {

std::string text(GVariant* dictionary, const char* key) {
  const gchar* value = nullptr;
  return g_variant_lookup(dictionary, key, "&s", &value) != FALSE ? value : std::string();
}

// The type is a list; a few players give a single text.
std::string joinedTexts(GVariant* dictionary, const char* key) {
  const GVariantPtr list(g_variant_lookup_value(dictionary, key, G_VARIANT_TYPE_STRING_ARRAY));
  if (!list) return text(dictionary, key);
  std::string joined;
  for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
    const GVariantPtr item(g_variant_get_child_value(list.get(), i));
    if (i > 0) joined += ", ";
    joined += g_variant_get_string(item.get(), nullptr);
  }
  return joined;
}

// The type is an object path; a few players give it as a text.
std::string trackId(GVariant* dictionary) {
  const gchar* path = nullptr;
  if (g_variant_lookup(dictionary, "mpris:trackid", "&o", &path) != FALSE) return path;
  auto id = text(dictionary, "mpris:trackid");
  return g_variant_is_object_path(id.c_str()) != FALSE ? id : std::string();
}

}  // namespace

PlayerTrack readTrack(GVariant* metadata) {
  return {.id = trackId(metadata),
          .title = text(metadata, "xesam:title"),
          .artist = joinedTexts(metadata, "xesam:artist"),
          .album = text(metadata, "xesam:album")};
}

PlayerState readState(GVariant* properties) {
  PlayerState state;
  state.playbackStatus = text(properties, "PlaybackStatus");
  gint64 position = 0;
  if (g_variant_lookup(properties, "Position", "x", &position) != FALSE) state.position = position;
  const GVariantPtr metadata(
      g_variant_lookup_value(properties, "Metadata", G_VARIANT_TYPE_VARDICT));
  if (metadata) state.track = readTrack(metadata.get());
  return state;
}

PlayerState readState(PlayerRequest& request) {
  const auto answer =
      request.call("org.freedesktop.DBus.Properties", "GetAll",
                   g_variant_new("(s)", "org.mpris.MediaPlayer2.Player"), "(a{sv})");
  if (!answer) return {};
  const GVariantPtr properties(g_variant_get_child_value(answer.get(), 0));
  return readState(properties.get());
}

}  // namespace vellora
