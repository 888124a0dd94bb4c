#include "wire_floor.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellora::wire {
namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* component = "org.a11y.atspi.Component";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr std::uint32_t pushButton = 43;  // AtspiRole
constexpr std::uint32_t scrollPane = 49;
constexpr int underWay = 32;
constexpr std::uint64_t patience = 5'000'000;  // microseconds

struct MessageDeleter {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using MessagePtr = std::unique_ptr<sd_bus_message, MessageDeleter>;

MessagePtr call(sd_bus* bus, const char* destination, const char* path, const char* interface,
                const char* member) {
  sd_bus_message* reply = nullptr;
  sd_bus_call_method(bus, destination, path, interface, member, nullptr, &reply, nullptr);
  return MessagePtr(reply);
}

// Pairs of a bus name and a path.
std::vector<std::array<std::string, 2>> references(sd_bus_message* reply) {
  std::vector<std::array<std::string, 2>> found;
  const char* name = nullptr;
  const char* path = nullptr;
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'a', "(so)") <= 0) return found;
  while (sd_bus_message_read(reply, "(so)", &name, &path) > 0) found.push_back({name, path});
  return found;
}

BusPtr openAddress(const char* address, bool isBus) {
  sd_bus* made = nullptr;
  if (sd_bus_new(&made) < 0) return nullptr;
  BusPtr bus(made);
  sd_bus_set_bus_client(made, isBus ? 1 : 0);
  if (sd_bus_set_address(made, address) < 0 || sd_bus_start(made) < 0) return nullptr;
  return bus;
}

std::string text(sd_bus_message* reply) {
  const char* value = "";
  if (reply != nullptr) sd_bus_message_read(reply, "s", &value);
  return value;
}

void visit(sd_bus* direct, const std::string& path, Objects& objects) {
  objects.all.push_back(path);
  std::uint32_t role = 0;
  const MessagePtr told = call(direct, nullptr, path.c_str(), accessible, "GetRole");
  if (told) sd_bus_message_read(told.get(), "u", &role);
  if (role == pushButton || role == scrollPane) objects.placed.push_back(path);
  for (const auto& [name, child] :
       references(call(direct, nullptr, path.c_str(), accessible, "GetChildren").get())) {
    visit(direct, child, objects);
  }
}

int count(sd_bus_message*, void* left, sd_bus_error*) {
  --*static_cast<int*>(left);
  return 0;
}

int takeTop(sd_bus_message* reply, void* tops, sd_bus_error*) {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  sd_bus_message_read(reply, "(iiii)", &x, &y, &width, &height);
  static_cast<std::vector<std::int32_t>*>(tops)->push_back(y);
  return 0;
}

// Sends questions, and takes in answers where too many are under way. With a pause it does so each
// time that it is woken, to be woken for several answers at once.
class Volley {
 public:
  explicit Volley(sd_bus* bus, std::chrono::microseconds pause = {}) : bus_(bus), pause_(pause) {}

  void ask(const std::string& path, const char* interface, const char* member, const char* types,
           auto... values) {
    askFor(count, &left_, path, interface, member, types, values...);
  }
  // The same, with another taker of the answer, which counts nothing: something must be asked after
  // it that counts.
  void askFor(sd_bus_message_handler_t take, void* data, const std::string& path,
              const char* interface, const char* member, const char* types, auto... values) {
    takeIn(underWay - 1);
    sd_bus_message* made = nullptr;
    sd_bus_message_new_method_call(bus_, &made, nullptr, path.c_str(), interface, member);
    const MessagePtr message(made);
    if (*types != '\0') sd_bus_message_append(made, types, values...);
    const bool isSent = sd_bus_call_async(bus_, nullptr, made, take, data, patience) >= 0;
    if (isSent && take == count) ++left_;
  }
  // Until no more than so many are under way; false when they do not come.
  bool takeIn(int most) {
    while (left_ > most) {
      const int done = sd_bus_process(bus_, nullptr);
      if (done < 0 || (done == 0 && sd_bus_wait(bus_, patience) <= 0)) return false;
      if (done == 0 && pause_.count() > 0) std::this_thread::sleep_for(pause_);
    }
    return true;
  }

 private:
  sd_bus* bus_;
  std::chrono::microseconds pause_;
  int left_ = 0;
};

// As a button of GTK answers them.
int answer(sd_bus_message* call, void*, sd_bus_error*) {
  sd_bus_message* made = nullptr;
  if (sd_bus_message_new_method_return(call, &made) < 0) return 0;
  const MessagePtr reply(made);
  const char* member = sd_bus_message_get_member(call);
  if (std::strcmp(member, "GetAll") == 0) {
    sd_bus_message_append(made, "a{sv}", 7, "version", "u", 1, "Name", "s",
                          "Line number 344 of a rather long song", "Description", "s", "", "Parent",
                          "(so)", ":1.12", "/org/a11y/atspi/accessible/17", "ChildCount", "i", 0,
                          "Locale", "s", "C", "AccessibleId", "s", "");
  } else if (std::strcmp(member, "GetRole") == 0) {
    sd_bus_message_append(made, "u", pushButton);
  } else {
    sd_bus_message_append(made, "(iiii)", 620, 220, 360, 34);
  }
  sd_bus_send(nullptr, made, nullptr);
  return 1;
}

[[noreturn]] void answerAll(int socket) {
  sd_bus* bus = nullptr;
  sd_id128_t id{};
  sd_id128_randomize(&id);
  if (sd_bus_new(&bus) < 0 || sd_bus_set_fd(bus, socket, socket) < 0 ||
      sd_bus_set_server(bus, 1, id) < 0 || sd_bus_set_anonymous(bus, 1) < 0 ||
      sd_bus_start(bus) < 0 || sd_bus_add_filter(bus, nullptr, answer, nullptr) < 0) {
    _exit(1);
  }
  for (;;) {
    const int done = sd_bus_process(bus, nullptr);
    if (done < 0 || (done == 0 && sd_bus_wait(bus, UINT64_MAX) < 0)) _exit(0);
  }
}

void askForPlaces(Volley& volley, const Objects& objects) {
  constexpr std::uint32_t onScreen = 0;
  for (const std::string& path : objects.placed) {
    volley.ask(path, component, "GetExtents", "u", onScreen);
  }
}

}  // namespace

Program connect(pid_t pid) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return {};
  const BusPtr session(opened);
  const std::string address =
      text(call(opened, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress").get());
  BusPtr bus = openAddress(address.c_str(), true);
  if (!bus) return {};
  const MessagePtr programs =
      call(bus.get(), "org.a11y.atspi.Registry", rootPath, accessible, "GetChildren");
  for (const auto& [name, path] : references(programs.get())) {
    sd_bus_creds* made = nullptr;
    pid_t owner = 0;
    if (sd_bus_get_name_creds(bus.get(), name.c_str(), SD_BUS_CREDS_PID, &made) < 0) continue;
    sd_bus_creds_get_pid(made, &owner);
    sd_bus_creds_unref(made);
    if (owner != pid) continue;
    const MessagePtr told = call(bus.get(), name.c_str(), path.c_str(),
                                 "org.a11y.atspi.Application", "GetApplicationBusAddress");
    return {std::move(bus), name, openAddress(text(told.get()).c_str(), false)};
  }
  return {};
}

BusPtr connectDirectly(pid_t pid) { return connect(pid).direct; }

Objects objectsOf(sd_bus* direct) {
  Objects objects;
  const auto windows = references(call(direct, nullptr, rootPath, accessible, "GetChildren").get());
  if (!windows.empty()) visit(direct, windows.front()[1], objects);
  return objects;
}

bool askAll(sd_bus* bus, const Objects& objects) {
  Volley volley(bus);
  for (const std::string& path : objects.all) {
    volley.ask(path, properties, "GetAll", "s", accessible);
    volley.ask(path, accessible, "GetRole", "");
  }
  askForPlaces(volley, objects);
  return volley.takeIn(0);
}

bool askPlaces(sd_bus* bus, const Objects& objects) {
  Volley volley(bus);
  volley.ask(objects.all.front(), accessible, "GetState", "");
  askForPlaces(volley, objects);
  return volley.takeIn(0);
}

bool askReading(const Program& program, const Objects& objects,
                const std::vector<std::string>& again, std::vector<std::int32_t>& tops) {
  constexpr std::uint32_t onScreen = 0;
  const std::string& window = objects.all.front();
  if (!call(program.bus.get(), program.name.c_str(), window.c_str(), accessible, "GetState")) {
    return false;
  }
  tops.clear();
  Volley volley(program.direct.get(), std::chrono::milliseconds(1));
  for (const std::string& path : objects.placed) {
    volley.askFor(takeTop, &tops, path, component, "GetExtents", "u", onScreen);
  }
  for (const std::string& path : again) volley.ask(path, properties, "GetAll", "s", accessible);
  volley.ask(window, component, "GetExtents", "u", onScreen);
  return volley.takeIn(0);
}

EmptyPeer::EmptyPeer() {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) std::abort();
  pid_ = fork();
  if (pid_ == 0) {
    close(ends[0]);
    answerAll(ends[1]);
  }
  close(ends[1]);
  sd_bus* bus = nullptr;
  if (sd_bus_new(&bus) < 0 || sd_bus_set_fd(bus, ends[0], ends[0]) < 0 ||
      sd_bus_set_anonymous(bus, 1) < 0 || sd_bus_start(bus) < 0) {
    std::abort();
  }
  bus_.reset(bus);
}

EmptyPeer::~EmptyPeer() {
  kill(pid_, SIGTERM);
  waitpid(pid_, nullptr, 0);
}

}  // namespace vellora::wire
