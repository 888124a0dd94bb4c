#include "platform/linux/accessibility/media_players.h"

#include <string_view>
#include <utility>

#include "platform/linux/accessibility/accessible_replies.h"
#include "platform/linux/players/process_family.h"

namespace vellora {

namespace {

constexpr const char* driver = "org.freedesktop.DBus";
constexpr const char* driverPath = "/org/freedesktop/DBus";
constexpr std::string_view prefix = "org.mpris.MediaPlayer2.";
constexpr const char* playerPath = "/org/mpris/MediaPlayer2";
constexpr const char* playerInterface = "org.mpris.MediaPlayer2.Player";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

// Answers may come between two readings: what was asked in one is taken in by a later one.
constexpr Steady::duration patience = std::chrono::seconds(1);

constexpr const char* ownersRule =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0namespace='org.mpris.MediaPlayer2'";
constexpr const char* changesRule =
    "type='signal',path='/org/mpris/MediaPlayer2',"
    "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged',"
    "arg0='org.mpris.MediaPlayer2.Player'";

// At a variant: its text, or the texts of its list joined; passes over any other.
std::string takeTexts(sd_bus_message* message) {
  const char* contents = nullptr;
  std::string joined;
  if (sd_bus_message_peek_type(message, nullptr, &contents) <= 0 || contents == nullptr) return {};
  const char* text = nullptr;
  if (std::string_view(contents) == "s") {
    if (sd_bus_message_read(message, "v", "s", &text) > 0) joined = text;
  } else if (std::string_view(contents) == "as") {
    sd_bus_message_enter_container(message, 'v', "as");
    sd_bus_message_enter_container(message, 'a', "s");
    for (bool isFirst = true; sd_bus_message_read(message, "s", &text) > 0; isFirst = false) {
      if (!isFirst) joined += ", ";
      joined += text;
    }
    sd_bus_message_exit_container(message);
    sd_bus_message_exit_container(message);
  } else {
    sd_bus_message_skip(message, "v");
  }
  return joined;
}

// Has `take` told of each key of an a{sv}; it takes the variant.
template <class Take>
void readDictionary(sd_bus_message* message, Take take) {
  if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0) return;
  const char* key = nullptr;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    if (sd_bus_message_read(message, "s", &key) <= 0) return;
    take(std::string_view(key));
    if (sd_bus_message_exit_container(message) < 0) return;
  }
  sd_bus_message_exit_container(message);
}

// At an a{sv} of the player's properties: those that are in it.
void takeProperties(sd_bus_message* message, MediaTrack& track) {
  readDictionary(message, [&](std::string_view property) {
    const char* contents = nullptr;
    sd_bus_message_peek_type(message, nullptr, &contents);
    const bool isDictionary = contents != nullptr && std::string_view(contents) == "a{sv}";
    if (property == "PlaybackStatus") {
      track.isPlaying = takeTexts(message) == "Playing";
    } else if (property == "Metadata" && isDictionary) {
      track.title.clear();
      track.artist.clear();
      sd_bus_message_enter_container(message, 'v', "a{sv}");
      readDictionary(message, [&](std::string_view key) {
        std::string text = takeTexts(message);
        if (key == "xesam:title") track.title = std::move(text);
        if (key == "xesam:artist") track.artist = std::move(text);
      });
      sd_bus_message_exit_container(message);
    } else {
      sd_bus_message_skip(message, "v");
    }
  });
}

}  // namespace

std::string trackTitle(const MediaTrack& track) {
  return track.artist.empty() ? track.title : track.title + titleSeparator + track.artist;
}

std::optional<MediaTrack> MediaPlayers::playerOf(std::int32_t process,
                                                 Steady::time_point deadline) {
  if (!connect()) return std::nullopt;
  session_->pump();
  if (!isListed_) askNames();
  session_->wait(deadline);
  for (auto& [name, service] : services_) {
    if (!service.isAsked && !service.process) askProcess(name);
    if (belongsTo(process, service) && !service.isFollowed) follow(name);
  }
  session_->wait(deadline);
  const MediaTrack* found = nullptr;
  for (auto& [name, service] : services_) {
    if (!belongsTo(process, service)) continue;
    if (found == nullptr || (service.track.isPlaying && !found->isPlaying)) found = &service.track;
  }
  if (found == nullptr) return std::nullopt;
  return *found;
}

bool MediaPlayers::belongsTo(std::int32_t process, Service& service) {
  if (!service.process) return false;
  const auto [entry, isNew] = service.belongs.try_emplace(process, false);
  if (isNew) entry->second = belongTogether(process, *service.process);
  return entry->second;
}

bool MediaPlayers::connect() {
  if (session_ && !session_->isBroken()) return true;
  services_.clear();
  session_ = BusConnection::openSession();
  if (!session_) return false;
  session_->setTimeout(patience);
  // Signals tell of players that come after this.
  session_->subscribe(ownersRule, [this](sd_bus_message* signal) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* owner = nullptr;
    if (sd_bus_message_read(signal, "sss", &name, &before, &owner) > 0) noteOwner(name, owner);
  });
  session_->subscribe(changesRule, [this](sd_bus_message* signal) { noteChanges(signal); });
  isListed_ = false;
  return true;
}

void MediaPlayers::askNames() {
  isListed_ = true;  // or about to be
  session_->send(
      session_->newCall(driver, driverPath, driver, "ListNames"), [this](sd_bus_message* reply) {
        isListed_ = reply != nullptr && sd_bus_message_enter_container(reply, 'a', "s") > 0;
        if (!isListed_) return;
        const char* text = nullptr;
        while (sd_bus_message_read(reply, "s", &text) > 0) {
          const std::string name = text;
          if (name.starts_with(prefix) && !services_.contains(name)) askOwner(name);
        }
      });
}

void MediaPlayers::askOwner(const std::string& name) {
  BusMessagePtr call = session_->newCall(driver, driverPath, driver, "GetNameOwner");
  if (call) sd_bus_message_append(call.get(), "s", name.c_str());
  session_->send(std::move(call), [this, name](sd_bus_message* reply) {
    const auto owner = readText(reply);
    if (!owner) {
      isListed_ = false;
    } else if (!services_.contains(name)) {
      noteOwner(name, *owner);
    }
  });
}

void MediaPlayers::noteOwner(const std::string& name, const std::string& owner) {
  const auto known = services_.find(name);
  if (known != services_.end() && known->second.owner == owner) return;
  services_.erase(name);
  if (owner.empty() || !name.starts_with(prefix)) return;
  services_[name].owner = owner;
  askProcess(name);
}

void MediaPlayers::askProcess(const std::string& name) {
  const std::string owner = services_[name].owner;
  services_[name].isAsked = true;
  BusMessagePtr call = session_->newCall(driver, driverPath, driver, "GetConnectionUnixProcessID");
  if (call) sd_bus_message_append(call.get(), "s", owner.c_str());
  session_->send(std::move(call), [this, name, owner](sd_bus_message* reply) {
    const auto known = services_.find(name);
    if (known == services_.end() || known->second.owner != owner) return;
    known->second.isAsked = false;
    if (const auto process = readNumber(reply)) {
      known->second.process = static_cast<std::int32_t>(*process);
    }
  });
}

void MediaPlayers::follow(const std::string& name) {
  Service& service = services_[name];
  service.isFollowed = true;
  const std::string owner = service.owner;
  BusMessagePtr call = session_->newCall(owner, playerPath, properties, "GetAll");
  if (call) sd_bus_message_append(call.get(), "s", playerInterface);
  session_->send(std::move(call), [this, name, owner](sd_bus_message* reply) {
    const auto known = services_.find(name);
    if (known == services_.end() || known->second.owner != owner) return;
    if (reply == nullptr) {
      known->second.isFollowed = false;
    } else {
      takeProperties(reply, known->second.track);
    }
  });
}

void MediaPlayers::noteChanges(sd_bus_message* signal) {
  const char* sender = sd_bus_message_get_sender(signal);
  if (sender == nullptr) return;
  for (auto& [name, service] : services_) {
    if (service.owner != sender || !service.isFollowed) continue;
    const char* interface = nullptr;
    if (sd_bus_message_rewind(signal, 1) < 0) return;
    if (sd_bus_message_read(signal, "s", &interface) <= 0) return;
    takeProperties(signal, service.track);
  }
}

}  // namespace vellora
