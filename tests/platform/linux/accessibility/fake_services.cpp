// The fake services' and programs' own processes.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <thread>
#include <utility>

#include <sys/mman.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "platform/linux/accessibility/bus_handles.h"
#include "platform/linux/accessibility/fake_own_bus.h"
#include "platform/linux/accessibility/fake_page.h"
#include "platform/linux/accessibility/fake_session.h"

namespace vellora {

namespace {

constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr const char* nullPath = "/org/a11y/atspi/null";
constexpr std::string_view objectPrefix = "/org/a11y/atspi/accessible/";
constexpr const char* registryName = "org.a11y.atspi.Registry";

void must(int result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
}

BusPtr openClient(const std::string& address) {
  sd_bus* made = nullptr;
  must(sd_bus_new(&made), "sd_bus_new");
  BusPtr bus(made);
  must(sd_bus_set_address(made, address.c_str()), "address");
  must(sd_bus_set_bus_client(made, 1), "client");
  must(sd_bus_start(made), "start");
  return bus;
}

[[noreturn]] void serve(sd_bus* bus) {
  for (;;) {
    const int result = sd_bus_process(bus, nullptr);
    if (result < 0) _exit(0);
    if (result == 0) sd_bus_wait(bus, UINT64_MAX);
  }
}

[[noreturn]] void serve(sd_bus* bus, FakeOwnBus& own, const std::function<void()>& beforeTurn) {
  for (;;) {
    const int result = sd_bus_process(bus, nullptr);
    if (result < 0) _exit(0);
    if (own.process() || result > 0) continue;
    own.wait(bus);
    beforeTurn();
  }
}

void pause(int microseconds) {
  std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

// --- The session's services -------------------------------------------------------------------

struct Services {
  FakeServices given;
  std::vector<std::pair<std::string, std::string>> programs;
  sd_bus* bus = nullptr;
};

int onServiceCall(sd_bus_message* call, void* data, sd_bus_error*) {
  auto& services = *static_cast<Services*>(data);
  const bool isQuestion = sd_bus_message_is_method_call(call, nullptr, "GetAddress") > 0 ||
                          sd_bus_message_is_method_call(call, nullptr, "Get") > 0;
  if (isQuestion && services.given.failures-- > 0) {
    return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_NO_MEMORY, "not this time");
  }
  if (sd_bus_message_is_method_call(call, "org.a11y.Bus", "GetAddress")) {
    return sd_bus_reply_method_return(call, "s", services.given.busAddress.c_str());
  }
  if (sd_bus_message_is_method_call(call, "org.freedesktop.DBus.Properties", "Get")) {
    return sd_bus_reply_method_return(call, "v", "b", services.given.isEnabled ? 1 : 0);
  }
  if (sd_bus_message_is_method_call(call, "org.freedesktop.DBus.Properties", "Set")) {
    const char* interface = nullptr;
    const char* name = nullptr;
    int value = 0;
    must(sd_bus_message_read(call, "ssv", &interface, &name, "b", &value), "Set");
    services.given.isEnabled = value != 0;
    must(sd_bus_emit_signal(services.bus, "/org/a11y/bus", "org.freedesktop.DBus.Properties",
                            "PropertiesChanged", "sa{sv}as", "org.a11y.Status", 1, "IsEnabled", "b",
                            value, 0),
         "signal");
    return sd_bus_reply_method_return(call, "");
  }
  if (sd_bus_message_is_method_call(call, "org.a11y.atspi.Socket", "Embed")) {
    const char* name = nullptr;
    const char* path = nullptr;
    must(sd_bus_message_read(call, "(so)", &name, &path), "Embed");
    services.programs.emplace_back(sd_bus_message_get_sender(call), path);
    return sd_bus_reply_method_return(call, "(so)", registryName, rootPath);
  }
  if (sd_bus_message_is_method_call(call, "org.a11y.atspi.Accessible", "GetChildren")) {
    sd_bus_message* reply = nullptr;
    must(sd_bus_message_new_method_return(call, &reply), "reply");
    const BusMessagePtr owner(reply);
    sd_bus_message_open_container(reply, 'a', "(so)");
    for (const auto& [name, path] : services.programs) {
      sd_bus_message_append(reply, "(so)", name.c_str(), path.c_str());
    }
    sd_bus_message_close_container(reply);
    return sd_bus_send(nullptr, reply, nullptr);
  }
  return 0;
}

// --- A program --------------------------------------------------------------------------------

class ProgramServer {
 public:
  ProgramServer(const FakeProgram& program, CallCounts& counts, sd_bus* bus)
      : program_(program),
        counts_(counts),
        bus_(bus),
        own_(program, counts, &ProgramServer::onCall, this) {}

  FakeOwnBus& ownBus() { return own_; }

  static int onCall(sd_bus_message* call, void* data, sd_bus_error*) {
    std::uint8_t type = 0;
    sd_bus_message_get_type(call, &type);
    if (type != SD_BUS_MESSAGE_METHOD_CALL) return 0;
    return static_cast<ProgramServer*>(data)->answer(call);
  }

 private:
  bool is(sd_bus_message* call, const char* member) const {
    return sd_bus_message_is_method_call(call, nullptr, member) > 0;
  }

  // The object of a path, "N" or for a copy "N_i_" and the path of whose child it is; null when
  // there is none.
  const FakeAccessible* object(sd_bus_message* call) const {
    const std::string_view path = sd_bus_message_get_path(call);
    if (path == rootPath) return program_.objects.data();
    if (!path.starts_with(objectPrefix)) return nullptr;
    const std::string number(path.substr(objectPrefix.size()));
    char* end = nullptr;
    const unsigned long index = std::strtoul(number.c_str(), &end, 10);
    if (end == number.c_str() || index >= program_.objects.size()) return nullptr;
    return &program_.objects[index];
  }

  int answer(sd_bus_message* call) {
    const int number = ++counts_.all;
    if (program_.diesAfter && number > *program_.diesAfter) _exit(0);
    if (program_.stopsAfter && number == *program_.stopsAfter + 1) raise(SIGSTOP);
    spin(program_.microsecondsPerCall);
    if (sd_bus_message_get_path(call) != std::string_view(rootPath)) {
      pause(counts_.microsecondsBelowRoot);
    }
    if (own_.isHere(call)) {
      ++counts_.direct;
      if (is(call, "GetState")) ++counts_.directStates;
    }
    if (is(call, "Change")) return change(call);
    if (is(call, "Put")) return takeObject(call, program_);
    if (is(call, "Play")) return takeMedia(bus_, call, program_);
    if (is(call, "GetAttributes")) ++counts_.attributes;
    if (is(call, "GetMatches")) ++counts_.matches;
    const FakeAccessible* found = object(call);
    if (is(call, "GetAll")) ++counts_.getAll;
    if (is(call, "Get")) ++counts_.get;
    if (is(call, "GetRole")) ++counts_.role;
    if (is(call, "GetChildren")) ++counts_.children;
    if (is(call, "GetChildAtIndex")) ++counts_.childAtIndex;
    if (is(call, "GetState")) ++counts_.states;
    if (is(call, "GetExtents")) ++counts_.extents;
    if (is(call, "GetApplicationBusAddress")) ++counts_.busAddress;
    if (isOfMedia(call)) return answerMedia(call, program_);
    if (found == nullptr) {
      return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_UNKNOWN_OBJECT, "it is gone");
    }
    if (found->answersWrongTypes) return answerWrongly(call);
    if (is(call, "GetAll")) return answerAll(call, *found);
    if (is(call, "Get")) return answerOne(call, *found);
    if (is(call, "GetRole")) return sd_bus_reply_method_return(call, "u", found->role);
    if (is(call, "GetApplicationBusAddress") && !program_.tellsNobody) {
      return sd_bus_reply_method_return(call, "s", own_.address().c_str());
    }
    if (is(call, "GetChildren")) return answerChildren(call, *found);
    if (is(call, "GetChildAtIndex")) return answerChild(call, *found);
    if (is(call, "GetState")) {
      return sd_bus_reply_method_return(call, "au", 2, static_cast<std::uint32_t>(found->states),
                                        static_cast<std::uint32_t>(found->states >> 32U));
    }
    if (is(call, "GetExtents") && found->extents) {
      const auto& [x, y, width, height] = *found->extents;
      return sd_bus_reply_method_return(call, "(iiii)", x, y, width, height);
    }
    return answerPage(bus_, call, program_, *found);
  }

  static void spin(int microseconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(microseconds);
    // On a busy machine the core comes back milliseconds after it was given away.
    const bool isLong = microseconds >= 1000;
    while (std::chrono::steady_clock::now() < end) {
      if (isLong) std::this_thread::yield();
    }
  }

  int answerWrongly(sd_bus_message* call) const {
    if (is(call, "GetAll")) {
      return sd_bus_reply_method_return(call, "a{sv}", 4, "Name", "i", 1, "Description", "as", 0,
                                        "AccessibleId", "b", 1, "ChildCount", "s", "many");
    }
    if (is(call, "Get")) return sd_bus_reply_method_return(call, "v", "d", 1.0);
    if (is(call, "GetRole")) return sd_bus_reply_method_return(call, "s", "push button");
    if (is(call, "GetChildren")) return sd_bus_reply_method_return(call, "as", 1, "child");
    if (is(call, "GetState")) return sd_bus_reply_method_return(call, "s", "iconified");
    return sd_bus_reply_method_return(call, "(iisi)", 1, 2, "wide", 4);
  }

  static std::size_t listLength(const FakeAccessible& object) {
    return object.copies > 0 ? object.copies : object.children.size();
  }
  static std::int32_t childCount(const FakeAccessible& object) {
    return object.claimedChildCount.value_or(static_cast<std::int32_t>(listLength(object)));
  }

  int answerAll(sd_bus_message* call, const FakeAccessible& object) const {
    if (object.nameIsANumber) {
      return sd_bus_reply_method_return(call, "a{sv}", 2, "Name", "i", 1, "Description", "s",
                                        object.description.c_str());
    }
    return sd_bus_reply_method_return(call, "a{sv}", 7, "Name", "s", object.name.c_str(),
                                      "Description", "s", object.description.c_str(), "Parent",
                                      "(so)", "", nullPath, "Attributes", "a{ss}", 1, "toolkit",
                                      "gtk", "ChildCount", "i", childCount(object), "Locale", "s",
                                      "C", "AccessibleId", "s", object.identifier.c_str());
  }

  int answerOne(sd_bus_message* call, const FakeAccessible& object) const {
    const char* interface = nullptr;
    const char* name = nullptr;
    must(sd_bus_message_read(call, "ss", &interface, &name), "Get");
    const std::string_view property = name;
    if (property == "Parent") return answerParent(bus_, call, program_, object);
    if (property == "ChildCount") {
      return sd_bus_reply_method_return(call, "v", "i", childCount(object));
    }
    if (property == "CharacterCount" && object.text) {
      return sd_bus_reply_method_return(call, "v", "i", charactersOf(*object.text));
    }
    if (property == "Name" && object.nameIsANumber) {
      return sd_bus_reply_method_return(call, "v", "i", 1);
    }
    const std::string* text = property == "Name"           ? &object.name
                              : property == "Description"  ? &object.description
                              : property == "AccessibleId" ? &object.identifier
                              : property == "ToolkitName"  ? &program_.toolkit
                                                           : nullptr;
    if (text != nullptr) return sd_bus_reply_method_return(call, "v", "s", text->c_str());
    return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_UNKNOWN_PROPERTY, "no such property");
  }

  std::pair<std::string, std::string> child(sd_bus_message* call, const FakeAccessible& object,
                                            std::size_t i) const {
    const char* self = nullptr;
    sd_bus_get_unique_name(bus_, &self);
    const std::string prefix(objectPrefix);
    if (object.copies > 0) {
      const std::string parent(
          std::string_view(sd_bus_message_get_path(call)).substr(prefix.size()));
      return {self,
              prefix + std::to_string(object.copyOf) + "_" + std::to_string(i) + "_" + parent};
    }
    const std::size_t place = object.children[i];
    if (place == FakeAccessible::nullChild) return {"", nullPath};
    if (place == FakeAccessible::goneChild) return {self, prefix + "gone" + std::to_string(i)};
    if (place == FakeAccessible::foreignChild) return {":1.4000000", prefix + "1"};
    const bool isForeign = i == 0 && !object.busOfFirstChild.empty();
    return {isForeign ? object.busOfFirstChild : self, prefix + std::to_string(place)};
  }

  int answerChildren(sd_bus_message* call, const FakeAccessible& object) const {
    sd_bus_message* reply = nullptr;
    must(sd_bus_message_new_method_return(call, &reply), "reply");
    const BusMessagePtr owner(reply);
    sd_bus_message_open_container(reply, 'a', "(so)");
    for (std::size_t i = 0; i < listLength(object); ++i) {
      const auto [name, path] = child(call, object, i);
      sd_bus_message_append(reply, "(so)", name.c_str(), path.c_str());
    }
    sd_bus_message_close_container(reply);
    return sd_bus_send(nullptr, reply, nullptr);
  }

  int answerChild(sd_bus_message* call, const FakeAccessible& object) const {
    std::int32_t index = 0;
    must(sd_bus_message_read(call, "i", &index), "index");
    const auto i = static_cast<std::size_t>(index);
    const auto [name, path] = i < listLength(object)
                                  ? child(call, object, i)
                                  : std::pair<std::string, std::string>("", nullPath);
    return sd_bus_reply_method_return(call, "(so)", name.c_str(), path.c_str());
  }

  // What `FakeProgramProcess::change` sends: t index, u role, sss texts, b answersWrongTypes, s
  // property, u times, at children.
  int change(sd_bus_message* call) {
    std::uint64_t index = 0;
    std::uint32_t role = 0;
    const char* name = nullptr;
    const char* description = nullptr;
    const char* identifier = nullptr;
    int answersWrongTypes = 0;
    const char* property = nullptr;
    std::uint32_t times = 0;
    const void* children = nullptr;
    std::size_t size = 0;
    must(sd_bus_message_read(call, "tusssbsu", &index, &role, &name, &description, &identifier,
                             &answersWrongTypes, &property, &times),
         "Change");
    must(sd_bus_message_read_array(call, 't', &children, &size), "Change");
    FakeAccessible& object = program_.objects.at(index);
    object.role = role;
    object.name = name;
    object.description = description;
    object.identifier = identifier;
    object.answersWrongTypes = answersWrongTypes != 0;
    const auto* first = static_cast<const std::uint64_t*>(children);
    object.children.assign(first, first + size / sizeof(std::uint64_t));
    const std::string path =
        index == 0 ? rootPath : std::string(objectPrefix) + std::to_string(index);
    const bool isList = property == std::string_view(FakeProgramProcess::childrenChanged);
    for (std::uint32_t i = 0; *property && i < times; ++i) {
      must(sd_bus_emit_signal(bus_, path.c_str(), "org.a11y.atspi.Event.Object",
                              isList ? "ChildrenChanged" : "PropertyChange", "siiva{sv}",
                              isList ? "add" : property, 0, 0, "s", "", 0),
           "signal");
    }
    return sd_bus_reply_method_return(call, "");
  }

  FakeProgram program_;
  CallCounts& counts_;
  sd_bus* bus_;
  FakeOwnBus own_;
};

}  // namespace

std::unique_ptr<ChildProcess> startServices(const PrivateBus& bus, const FakeServices& given) {
  return std::make_unique<ChildProcess>([&](const std::function<void()>& ready) {
    const BusPtr connection = openClient(bus.address());
    Services services{given, {}, connection.get()};
    must(sd_bus_add_filter(connection.get(), nullptr, onServiceCall, &services), "filter");
    must(sd_bus_request_name(connection.get(), registryName, 0), "registry's name");
    must(sd_bus_request_name(connection.get(), "org.a11y.Bus", 0), "service's name");
    ready();
    serve(connection.get());
  });
}

FakeProgramProcess::FakeProgramProcess(const PrivateBus& bus, const FakeProgram& program)
    : bus_(bus) {
  void* shared =
      mmap(nullptr, sizeof(CallCounts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) throw std::runtime_error("no shared memory");
  counts_ = new (shared) CallCounts();
  process_ = std::make_unique<ChildProcess>([&](const std::function<void()>& ready) {
    const BusPtr connection = openClient(bus.address());
    ProgramServer server(program, *counts_, connection.get());
    must(sd_bus_add_filter(connection.get(), nullptr, ProgramServer::onCall, &server), "filter");
    const char* self = nullptr;
    must(sd_bus_get_unique_name(connection.get(), &self), "name");
    std::strncpy(counts_->busName, self, sizeof(counts_->busName) - 1);
    must(sd_bus_call_method(connection.get(), registryName, rootPath, "org.a11y.atspi.Socket",
                            "Embed", nullptr, nullptr, "(so)", self, rootPath),
         "Embed");
    for (const auto& [name, media] : program.media) ownMedia(connection.get(), name);
    ready();
    serve(connection.get(), server.ownBus(), [this] { pause(counts_->microsecondsBetweenTurns); });
  });
}

FakeProgramProcess::~FakeProgramProcess() {
  process_.reset();
  munmap(counts_, sizeof(CallCounts));
}

}  // namespace vellora
