#include <string>

#include "base/utf8.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "fuzz/raw_message.h"
#include "platform/linux/player/bus_questions.h"
#include "platform/linux/player/player_state.h"

namespace vellora {

namespace {

// The text of the first entry of that name, by hand.
std::string plainText(GVariant* dictionary, const std::string& name) {
  for (gsize i = 0; i < g_variant_n_children(dictionary); ++i) {
    const GVariantPtr entry(g_variant_get_child_value(dictionary, i));
    const GVariantPtr key(g_variant_get_child_value(entry.get(), 0));
    if (name != g_variant_get_string(key.get(), nullptr)) continue;
    const GVariantPtr boxed(g_variant_get_child_value(entry.get(), 1));
    const GVariantPtr value(g_variant_get_variant(boxed.get()));
    const bool isText = g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) != FALSE;
    return isText ? g_variant_get_string(value.get(), nullptr) : "";
  }
  return "";
}

void requireReadable(const std::string& text) {
  require(isWellFormed(text), "a text of a message is UTF-8");
}

}  // namespace

// The first line is the message's signature, the rest its body.
void fuzzMprisReplies(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::string_view signature = input.takeUntil('\n').substr(0, 255);
  std::string raw = RawMessage::signal(signature, input.rest());
  GErrorSlot error;
  const GObjectPtr<GDBusMessage> message(
      g_dbus_message_new_from_blob(reinterpret_cast<guchar*>(raw.data()), raw.size(),
                                   G_DBUS_CAPABILITY_FLAGS_NONE, error.out()));
  if (!message) return;
  GVariant* const body = g_dbus_message_get_body(message.get());
  if (body == nullptr || g_variant_n_children(body) == 0) return;
  // As a connection hands it on: what is of another type is an error.
  GVariantPtr value(g_variant_get_child_value(body, 0));
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARDICT) != FALSE) {
    const PlayerState state = readState(value.get());
    requireReadable(state.playbackStatus);
    for (const std::string& text :
         {state.track.id, state.track.title, state.track.artist, state.track.album}) {
      requireReadable(text);
    }
    const PlayerTrack track = readTrack(value.get());
    require(track.title == plainText(value.get(), "xesam:title"), "a track's title");
    require(track.album == plainText(value.get(), "xesam:album"), "a track's album");
    require(state.playbackStatus == plainText(value.get(), "PlaybackStatus"), "a player's status");
  }
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    value.reset(g_variant_get_variant(value.get()));
  }
  const BusAnswer answer{true, std::move(value)};
  if (const auto text = textOf(answer)) requireReadable(*text);
  numberOf(answer);
}

}  // namespace vellora
