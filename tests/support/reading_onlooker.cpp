#include "support/reading_onlooker.h"

#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <optional>
#include <string_view>
#include <utility>

#include <poll.h>
#include <sys/inotify.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace vellora {

namespace {

constexpr const char* driver = "org.freedesktop.DBus";
constexpr const char* driverPath = "/org/freedesktop/DBus";

// The accessibility bus's address, from the session bus.
std::string busAddress() {
  sd_bus* session = nullptr;
  sd_bus_message* reply = nullptr;
  const char* address = "";
  std::string found;
  if (sd_bus_open_user(&session) >= 0 &&
      sd_bus_call_method(session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                         nullptr, &reply, nullptr) >= 0 &&
      sd_bus_message_read(reply, "s", &address) > 0) {
    found = address;
  }
  sd_bus_message_unref(reply);
  sd_bus_unref(session);
  return found;
}

bool connect(sd_bus* bus, const std::string& address) {
  return sd_bus_set_address(bus, address.c_str()) >= 0 && sd_bus_set_bus_client(bus, 1) >= 0 &&
         sd_bus_set_monitor(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
}

bool belongsTo(sd_bus* bus, const char* name, pid_t process) {
  sd_bus_message* reply = nullptr;
  std::uint32_t found = 0;
  const bool answered =
      sd_bus_call_method(bus, driver, driverPath, driver, "GetConnectionUnixProcessID", nullptr,
                         &reply, "s", name) >= 0 &&
      sd_bus_message_read(reply, "u", &found) > 0;
  sd_bus_message_unref(reply);
  return answered && std::cmp_equal(found, process);
}

// The process's name on the bus; empty when it has none.
std::string nameOf(sd_bus* bus, pid_t process) {
  char** names = nullptr;
  std::string found;
  if (sd_bus_list_names(bus, &names, nullptr) < 0) return found;
  for (char** name = names; *name != nullptr; ++name) {
    if (**name == ':' && found.empty() && belongsTo(bus, *name, process)) found = *name;
    std::free(*name);
  }
  std::free(names);
  return found;
}

bool becomeMonitor(sd_bus* bus, const std::string& name) {
  const std::string states = "type='method_call',member='GetState',sender='" + name + "'";
  const std::string places = "type='method_call',member='GetExtents',sender='" + name + "'";
  const std::string replies = "type='method_return',destination='" + name + "'";
  return sd_bus_call_method(bus, driver, driverPath, "org.freedesktop.DBus.Monitoring",
                            "BecomeMonitor", nullptr, nullptr, "asu", 3, states.c_str(),
                            places.c_str(), replies.c_str(), 0u) >= 0;
}

// A line of libwayland's: "[1234567.890]  -> wl_surface@23.commit()", the time in milliseconds.
struct DebugLine {
  std::uint32_t microseconds;
  std::string_view request;
};

std::optional<DebugLine> requestOf(std::string_view line) {
  constexpr std::string_view arrow = "]  -> ";
  const std::size_t end = line.find(arrow);
  const std::size_t begin = line.find_first_of("0123456789");
  if (!line.starts_with('[') || end == line.npos || begin >= end) return std::nullopt;
  std::uint32_t milliseconds = 0;
  std::uint32_t rest = 0;
  const auto [dot, error] = std::from_chars(&line[begin], &line[end], milliseconds);
  if (error != std::errc() || *dot != '.') return std::nullopt;
  if (std::from_chars(dot + 1, &line[end], rest).ec != std::errc()) return std::nullopt;
  return DebugLine{milliseconds * 1000 + rest, line.substr(end + arrow.size())};
}

template <class Function>
void eachRequest(const std::string& log, Function function) {
  std::ifstream file(log);
  for (std::string line; std::getline(file, line);) {
    if (const auto request = requestOf(line)) function(*request);
  }
}

}  // namespace

void ReadingOnlooker::CloseBus::operator()(sd_bus* bus) const { sd_bus_unref(bus); }

std::unique_ptr<ReadingOnlooker> ReadingOnlooker::watch(pid_t overlay, const std::string& snapshot,
                                                        std::string& problem) {
  sd_bus* made = nullptr;
  if (sd_bus_new(&made) < 0) return nullptr;
  Bus bus(made);
  if (!connect(bus.get(), busAddress())) {
    problem = "no accessibility bus";
    return nullptr;
  }
  const std::string name = nameOf(bus.get(), overlay);
  if (name.empty()) {
    problem = "the process is not on the accessibility bus";
    return nullptr;
  }
  if (!becomeMonitor(bus.get(), name)) {
    problem = "the accessibility bus lets nobody listen";
    return nullptr;
  }
  const int files = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (inotify_add_watch(files, snapshot.substr(0, snapshot.rfind('/')).c_str(), IN_OPEN) < 0) {
    problem = "cannot watch the snapshot's folder";
    return nullptr;
  }
  return std::unique_ptr<ReadingOnlooker>(new ReadingOnlooker(std::move(bus), files));
}

ReadingOnlooker::ReadingOnlooker(Bus bus, int files) : bus_(std::move(bus)), files_(files) {}

ReadingOnlooker::~ReadingOnlooker() { close(files_); }

std::int64_t ReadingOnlooker::now() {
  using namespace std::chrono;
  return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

void ReadingOnlooker::note(What what) { seen_.push_back({now(), what}); }

void ReadingOnlooker::look(int milliseconds, int other, const std::function<void()>& function) {
  const std::int64_t end = now() + std::int64_t{milliseconds} * 1000;
  for (std::int64_t left = end - now(); left > 0; left = end - now()) {
    pollfd ready[] = {
        {sd_bus_get_fd(bus_.get()), POLLIN, 0}, {files_, POLLIN, 0}, {other, POLLIN, 0}};
    poll(ready, 3, static_cast<int>(left / 1000) + 1);
    if (ready[2].revents != 0) function();
    if (ready[0].revents != 0) noteMessages();
    if (ready[1].revents != 0) noteTicks();
  }
}

void ReadingOnlooker::noteTicks() {
  alignas(inotify_event) char buffer[4096];
  ssize_t size = 0;
  while ((size = read(files_, buffer, sizeof buffer)) > 0) {
    for (char* at = buffer; at < buffer + size;) {
      const auto& event = *reinterpret_cast<const inotify_event*>(at);
      if (event.len != 0 && std::strcmp(event.name, "snapshot.json") == 0) note(What::tick);
      at += sizeof(inotify_event) + event.len;
    }
  }
}

void ReadingOnlooker::noteMessages() {
  sd_bus_message* message = nullptr;
  while (sd_bus_process(bus_.get(), &message) > 0) {
    if (message == nullptr) continue;
    noteTicks();  // those before this message
    std::uint8_t type = 0;
    sd_bus_message_get_type(message, &type);
    std::uint64_t number = 0;
    if (type == SD_BUS_MESSAGE_METHOD_CALL) {
      if (std::string_view(sd_bus_message_get_member(message)) == "GetState") {
        note(What::asked);
      } else if (sd_bus_message_get_cookie(message, &number) >= 0) {
        questions_[number] = sd_bus_message_get_path(message);
      }
    } else if (sd_bus_message_get_reply_cookie(message, &number) >= 0) {
      std::array<std::int32_t, 4> box{};
      const auto question = questions_.extract(number);
      if (!question.empty() &&
          sd_bus_message_read(message, "(iiii)", &box[0], &box[1], &box[2], &box[3]) > 0) {
        auto& place = places_[question.mapped()];
        note(std::exchange(place, box) == box ? What::place : What::moved);
      }
    }
    message = sd_bus_message_unref(message);
  }
}

std::vector<std::int64_t> commitsIn(const std::string& log) {
  std::vector<std::int64_t> commits;
  const std::int64_t now = ReadingOnlooker::now();
  eachRequest(log, [&](const DebugLine& line) {
    if (!line.request.starts_with("wl_surface@") || !line.request.ends_with(".commit()")) return;
    const std::uint32_t ago = static_cast<std::uint32_t>(now) - line.microseconds;
    commits.push_back(now - std::int64_t{ago});
  });
  return commits;
}

std::size_t requestsIn(const std::string& log) {
  std::size_t count = 0;
  eachRequest(log, [&](const DebugLine&) { ++count; });
  return count;
}

}  // namespace vellora
