#pragma once

#include <string_view>

#include <gio/gio.h>

#include "playback/playback.h"

// MPRIS properties of the playback as D-Bus values. Each result is a floating reference; nothing
// (nullptr) for a name that is no property of the interface.
namespace vellora::demo {

GVariant* rootProperty(std::string_view name);
GVariant* playerProperty(const Playback& playback, std::string_view name);
GVariant* trackListProperty(const Playback& playback, std::string_view name);

// The metadata map of the song at `index`: mpris:trackid, mpris:length, xesam:title, xesam:artist,
// xesam:album.
GVariant* trackMetadata(const Playback& playback, std::size_t index);

}  // namespace vellora::demo
