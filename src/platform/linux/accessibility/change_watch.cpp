#include "platform/linux/accessibility/change_watch.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

#include "platform/linux/accessibility/accessible_replies.h"

namespace vellora {

namespace {

constexpr std::string_view childrenChanged = "ChildrenChanged";
constexpr std::string_view stateChanged = "StateChanged";

// The properties that readings ask for. Others change often: a slider's value with every second of
// a song. An id is signalled only while some other program has registered for that.
constexpr std::array watchedProperties{"accessible-name", "accessible-description",
                                       "accessible-role", "accessible-id"};

// More objects than this may as well be all.
constexpr std::size_t mostObjects = 64;

// Whether the object has the state from now on. GTK 3 also signals of each object, when it is first
// asked for, that it is not defunct.
bool isBegun(sd_bus_message* stateChange) {
  const char* state = nullptr;
  std::int32_t isSet = 1;
  return sd_bus_message_read(stateChange, "si", &state, &isSet) <= 0 || isSet != 0;
}

}  // namespace

// A program of GTK 3 signals once somebody has asked it for the address of its own bus:
// at-spi2-core (atk-adaptor) takes who asks for a client, until that client leaves the bus.
// Registering with the registry instead would have every program of the desktop send its signals.
void ChangeWatch::begin(const AccessibleReference& root) {
  end();
  program_ = root.bus;
  subscribe("member='ChildrenChanged'");
  // A child that came without a signal may go without one, but any object that is gone says so.
  subscribe("member='StateChanged',arg0='defunct'");
  for (const char* property : watchedProperties) {
    subscribe(std::string("member='PropertyChange',arg0='") + property + "'");
  }
  ++open_;
  bus_.send(
      bus_.newCall(root.bus, root.path, "org.a11y.atspi.Application", "GetApplicationBusAddress"),
      [this](sd_bus_message* reply) {
        --open_;
        const auto address = readText(reply);
        if (!address) isRefused_ = true;
        address_ = address.value_or(std::string());
      });
}

void ChangeWatch::end() {
  bus_.unsubscribe();
  program_.clear();
  open_ = 0;
  isRefused_ = false;
  address_.clear();
  changes_ = {};
}

void ChangeWatch::subscribe(const std::string& condition) {
  ++open_;
  bus_.subscribe(
      "type='signal',sender='" + program_ + "',interface='org.a11y.atspi.Event.Object'," +
          condition,
      [this](sd_bus_message* signal) { note(signal); },
      [this](bool isInstalled) {
        --open_;
        if (!isInstalled) isRefused_ = true;
      });
}

bool ChangeWatch::isTold(const std::string& busName) const {
  return busName == program_ && open_ == 0 && !isRefused_;
}

AccessibleChanges ChangeWatch::take() { return std::exchange(changes_, {}); }

void ChangeWatch::note(sd_bus_message* signal) {
  const char* member = sd_bus_message_get_member(signal);
  const char* path = sd_bus_message_get_path(signal);
  if (member != nullptr && member == stateChanged && !isBegun(signal)) return;
  if (member == nullptr || path == nullptr || member == childrenChanged || member == stateChanged ||
      changes_.objects.size() >= mostObjects) {
    changes_.everything = true;
  }
  if (changes_.everything) {
    changes_.objects.clear();
  } else {
    changes_.objects.insert(path);
  }
}

}  // namespace vellora
