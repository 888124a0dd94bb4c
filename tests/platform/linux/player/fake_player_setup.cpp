#include "platform/linux/player/fake_player_setup.h"

#include <gio/gio.h>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {
namespace {

constexpr const char* form = "(smssxa(ssass)tbubuasasas)";

template <typename Texts>
GVariant* list(const Texts& texts) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_STRING_ARRAY);
  for (const auto& text : texts) g_variant_builder_add(&builder, "s", text.c_str());
  return g_variant_builder_end(&builder);
}

template <typename Texts>
Texts texts(GVariantIter* list) {
  Texts result;
  for (const gchar* text = nullptr; g_variant_iter_next(list, "&s", &text) != FALSE;) {
    result.insert(result.end(), text);
  }
  g_variant_iter_free(list);
  return result;
}

}  // namespace

std::string argumentText(const FakePlayerSetup& setup) {
  GVariantBuilder tracks;
  g_variant_builder_init(&tracks, G_VARIANT_TYPE("a(ssass)"));
  for (const auto& track : setup.tracks) {
    g_variant_builder_add(&tracks, "(ss@ass)", track.id.c_str(), track.title.c_str(),
                          list(track.artists), track.album.c_str());
  }
  const auto value = ownVariant(g_variant_new(
      "(smssxa(ssass)tbubu@as@as@as)", setup.busName.c_str(),
      setup.desktopEntry ? setup.desktopEntry->c_str() : nullptr, setup.status.c_str(),
      static_cast<gint64>(setup.position), &tracks, static_cast<guint64>(setup.current),
      setup.trackList ? TRUE : FALSE, setup.changesAfter, setup.changes ? TRUE : FALSE,
      setup.seeksAfter, list(setup.mute), list(setup.refused), list(setup.deadly)));
  return GCharPtr(g_variant_print(value.get(), FALSE)).get();
}

FakePlayerSetup fakePlayerSetup(const std::string& argument) {
  const GVariantPtr value(
      g_variant_parse(G_VARIANT_TYPE(form), argument.c_str(), nullptr, nullptr, nullptr));
  FakePlayerSetup setup;
  const gchar *busName = nullptr, *desktopEntry = nullptr, *status = nullptr;
  gint64 position = 0;
  guint64 current = 0;
  gboolean trackList = FALSE, changes = FALSE;
  GVariantIter *tracks = nullptr, *mute = nullptr, *refused = nullptr, *deadly = nullptr;
  g_variant_get(value.get(), "(&sm&s&sxa(ssass)tbubuasasas)", &busName, &desktopEntry, &status,
                &position, &tracks, &current, &trackList, &setup.changesAfter, &changes,
                &setup.seeksAfter, &mute, &refused, &deadly);
  setup.busName = busName;
  setup.desktopEntry.reset();
  if (desktopEntry != nullptr) setup.desktopEntry = desktopEntry;
  setup.status = status;
  setup.position = position;
  setup.current = current;
  setup.trackList = trackList != FALSE;
  setup.changes = changes != FALSE;
  setup.mute = texts<std::set<std::string>>(mute);
  setup.refused = texts<std::set<std::string>>(refused);
  setup.deadly = texts<std::set<std::string>>(deadly);
  const gchar *id = nullptr, *title = nullptr, *album = nullptr;
  GVariantIter* artists = nullptr;
  while (g_variant_iter_next(tracks, "(&s&sas&s)", &id, &title, &artists, &album) != FALSE) {
    setup.tracks.push_back({id, title, texts<std::vector<std::string>>(artists), album});
  }
  g_variant_iter_free(tracks);
  return setup;
}

}  // namespace vellora
