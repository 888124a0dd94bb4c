#include "platform/linux/accessibility/fake_page.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <set>
#include <stdexcept>

#include "platform/linux/accessibility/bus_handles.h"

namespace vellora {

namespace {

constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr const char* mediaPath = "/org/mpris/MediaPlayer2";
constexpr const char* mediaInterface = "org.mpris.MediaPlayer2.Player";
constexpr std::string_view objectPrefix = "/org/a11y/atspi/accessible/";

void must(int result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
}

BusMessagePtr replyTo(sd_bus_message* call) {
  sd_bus_message* made = nullptr;
  must(sd_bus_message_new_method_return(call, &made), "reply");
  return BusMessagePtr(made);
}

std::string selfOf(sd_bus* bus) {
  const char* self = nullptr;
  must(sd_bus_get_unique_name(bus, &self), "name");
  return self;
}

std::string pathOf(std::size_t object) {
  return object == 0 ? rootPath : std::string(objectPrefix) + std::to_string(object);
}

// Appends what is below the object and has one of the roles, each before its children.
void match(const FakeProgram& program, const FakeAccessible& top, const std::set<unsigned>& roles,
           std::set<std::size_t>& met, std::vector<std::size_t>& found) {
  for (const std::size_t child : top.children) {
    if (child >= program.objects.size() || !met.insert(child).second) continue;
    const FakeAccessible& object = program.objects[child];
    if (roles.empty() || roles.contains(object.role)) found.push_back(child);
    match(program, object, roles, met, found);
  }
}

int answerMatches(sd_bus* bus, sd_bus_message* call, const FakeProgram& program,
                  const FakeAccessible& object) {
  // (aiia{ss}iaiiasib)uib: of the rule only the roles count here.
  must(sd_bus_message_enter_container(call, 'r', "aiia{ss}iaiiasib"), "rule");
  must(sd_bus_message_skip(call, "aiia{ss}i"), "states and attributes");
  std::set<unsigned> roles;
  must(sd_bus_message_enter_container(call, 'a', "i"), "roles");
  std::int32_t word = 0;
  for (unsigned i = 0; sd_bus_message_read(call, "i", &word) > 0; ++i) {
    for (unsigned bit = 0; bit < 32; ++bit) {
      if (static_cast<std::uint32_t>(word) >> bit & 1U) roles.insert(i * 32 + bit);
    }
  }
  std::set<std::size_t> met;
  std::vector<std::size_t> found;
  match(program, object, roles, met, found);
  const BusMessagePtr reply = replyTo(call);
  const std::string self = selfOf(bus);
  sd_bus_message_open_container(reply.get(), 'a', "(so)");
  for (const std::size_t one : found) {
    sd_bus_message_append(reply.get(), "(so)", self.c_str(), pathOf(one).c_str());
  }
  sd_bus_message_close_container(reply.get());
  return sd_bus_send(nullptr, reply.get(), nullptr);
}

// The characters' box of an element's text: 8 points inside its own.
std::array<std::int32_t, 4> boxOfText(const std::array<std::int32_t, 4>& element) {
  return {element[0] + 8, element[1] + 8, element[2] - 16, element[3] - 16};
}

void appendMedia(sd_bus_message* message, const FakeMedia& media) {
  sd_bus_message_open_container(message, 'a', "{sv}");
  sd_bus_message_append(message, "{sv}", "PlaybackStatus", "s", media.status.c_str());
  sd_bus_message_append(message, "{sv}", "Rate", "d", 1.0);
  sd_bus_message_open_container(message, 'e', "sv");
  sd_bus_message_append(message, "s", "Metadata");
  sd_bus_message_open_container(message, 'v', "a{sv}");
  sd_bus_message_open_container(message, 'a', "{sv}");
  sd_bus_message_append(message, "{sv}", "mpris:length", "x", std::int64_t{1});
  sd_bus_message_append(message, "{sv}", "xesam:title", "s", media.title.c_str());
  sd_bus_message_open_container(message, 'e', "sv");
  sd_bus_message_append(message, "s", "xesam:artist");
  sd_bus_message_open_container(message, 'v', "as");
  sd_bus_message_open_container(message, 'a', "s");
  for (const std::string& artist : media.artists) {
    sd_bus_message_append(message, "s", artist.c_str());
  }
  // The list, its variant and entry; the metadata, their variant and entry; the properties.
  for (int i = 0; i < 7; ++i) sd_bus_message_close_container(message);
}

// The name is that of the service behind the prefix; a call to the unique name is for the first.
const FakeMedia* mediaOf(sd_bus_message* call, const FakeProgram& program) {
  const std::string_view destination = sd_bus_message_get_destination(call);
  for (const auto& [name, media] : program.media) {
    if (destination.starts_with(':') || destination == "org.mpris.MediaPlayer2." + name) {
      return &media;
    }
  }
  return nullptr;
}

}  // namespace

std::int32_t charactersOf(const std::string& text) {
  const auto begins = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  return static_cast<std::int32_t>(std::ranges::count_if(text, begins));
}

int answerPage(sd_bus* bus, sd_bus_message* call, const FakeProgram& program,
               const FakeAccessible& object) {
  const auto is = [call](const char* interface, const char* member) {
    return sd_bus_message_is_method_call(call, interface, member) > 0;
  };
  if (is("org.a11y.atspi.Text", "GetText") && object.text) {
    return sd_bus_reply_method_return(call, "s", object.text->c_str());
  }
  if (is("org.a11y.atspi.Text", "GetRangeExtents") && object.text && object.extents) {
    std::int32_t begin = 0;
    std::int32_t end = 0;
    if (sd_bus_message_read(call, "ii", &begin, &end) < 0) return -EINVAL;
    const bool isAll = begin == 0 && end == charactersOf(*object.text);
    const auto [x, y, width, height] =
        isAll ? boxOfText(*object.extents) : std::array<std::int32_t, 4>{0, 0, 0, 0};
    return sd_bus_reply_method_return(call, "iiii", x, y, width, height);
  }
  if (is("org.a11y.atspi.Document", "GetAttributes") && object.address) {
    return sd_bus_reply_method_return(call, "a{ss}", 2, "MimeType", "text/html", "DocURL",
                                      object.address->c_str());
  }
  if (is("org.a11y.atspi.Accessible", "GetAttributes")) {
    return sd_bus_reply_method_return(call, "a{ss}", 3, "tag", "div", "class",
                                      object.classes.c_str(), "id", object.attributeId.c_str());
  }
  if (is("org.a11y.atspi.Collection", "GetMatches") && program.hasCollection) {
    return answerMatches(bus, call, program, object);
  }
  return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_UNKNOWN_METHOD, "no such method");
}

int answerParent(sd_bus* bus, sd_bus_message* call, const FakeProgram& program,
                 const FakeAccessible& object) {
  const auto self = static_cast<std::size_t>(&object - program.objects.data());
  for (std::size_t i = 0; i < program.objects.size(); ++i) {
    for (const std::size_t child : program.objects[i].children) {
      if (child != self) continue;
      return sd_bus_reply_method_return(call, "v", "(so)", selfOf(bus).c_str(), pathOf(i).c_str());
    }
  }
  return sd_bus_reply_method_return(call, "v", "(so)", "", "/org/a11y/atspi/null");
}

bool isOfMedia(sd_bus_message* call) {
  return sd_bus_message_get_path(call) == std::string_view(mediaPath);
}

int answerMedia(sd_bus_message* call, const FakeProgram& program) {
  const FakeMedia* media = mediaOf(call, program);
  if (media == nullptr || !sd_bus_message_is_method_call(call, nullptr, "GetAll")) {
    return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_UNKNOWN_METHOD, "no such method");
  }
  const BusMessagePtr reply = replyTo(call);
  appendMedia(reply.get(), *media);
  return sd_bus_send(nullptr, reply.get(), nullptr);
}

void ownMedia(sd_bus* bus, const std::string& name) {
  must(sd_bus_request_name(bus, ("org.mpris.MediaPlayer2." + name).c_str(), 0), "media's name");
}

// t place, u role, sssssss texts (name, description, id, classes, attribute's id, text, address),
// bb whether it has the last two, t states, b whether it has extents, iiii, at children.
int takeObject(sd_bus_message* call, FakeProgram& program) {
  std::uint64_t place = 0;
  FakeAccessible object;
  const char* texts[7] = {};
  int has[3] = {};
  std::array<std::int32_t, 4> extents{};
  must(sd_bus_message_read(call, "tusssssssbbtbiiii", &place, &object.role, &texts[0], &texts[1],
                           &texts[2], &texts[3], &texts[4], &texts[5], &texts[6], &has[0], &has[1],
                           &object.states, &has[2], extents.data(), &extents[1], &extents[2],
                           &extents[3]),
       "Put");
  object.name = texts[0];
  object.description = texts[1];
  object.identifier = texts[2];
  object.classes = texts[3];
  object.attributeId = texts[4];
  if (has[0] != 0) object.text = texts[5];
  if (has[1] != 0) object.address = texts[6];
  if (has[2] != 0) object.extents = extents;
  const void* children = nullptr;
  std::size_t size = 0;
  must(sd_bus_message_read_array(call, 't', &children, &size), "Put");
  const auto* first = static_cast<const std::uint64_t*>(children);
  object.children.assign(first, first + size / sizeof(std::uint64_t));
  if (place >= program.objects.size()) program.objects.resize(place + 1);
  program.objects[place] = object;
  return sd_bus_reply_method_return(call, "");
}

// s name, b whether it is there, ss title and status, as artists.
int takeMedia(sd_bus* bus, sd_bus_message* call, FakeProgram& program) {
  const char* name = nullptr;
  int isThere = 0;
  const char* title = nullptr;
  const char* status = nullptr;
  must(sd_bus_message_read(call, "sbss", &name, &isThere, &title, &status), "Play");
  FakeMedia media{.title = title, .status = status};
  must(sd_bus_message_enter_container(call, 'a', "s"), "Play");
  const char* artist = nullptr;
  while (sd_bus_message_read(call, "s", &artist) > 0) media.artists.emplace_back(artist);
  const bool wasThere = program.media.contains(name);
  if (isThere == 0) {
    program.media.erase(name);
    sd_bus_release_name(bus, ("org.mpris.MediaPlayer2." + std::string(name)).c_str());
    return sd_bus_reply_method_return(call, "");
  }
  program.media[name] = media;
  if (!wasThere) ownMedia(bus, name);
  sd_bus_message* made = nullptr;
  must(sd_bus_message_new_signal(bus, &made, mediaPath, "org.freedesktop.DBus.Properties",
                                 "PropertiesChanged"),
       "signal");
  const BusMessagePtr signal(made);
  sd_bus_message_append(made, "s", mediaInterface);
  appendMedia(made, media);
  sd_bus_message_append(made, "as", 0);
  must(sd_bus_send(bus, made, nullptr), "signal");
  return sd_bus_reply_method_return(call, "");
}

}  // namespace vellora
