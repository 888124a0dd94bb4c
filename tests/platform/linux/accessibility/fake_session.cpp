#include "platform/linux/accessibility/fake_session.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "platform/linux/accessibility/bus_handles.h"

namespace vellora {

namespace {

constexpr int startTimeout = 10'000;  // milliseconds

BusPtr connect(const PrivateBus& bus) {
  sd_bus* made = nullptr;
  if (sd_bus_new(&made) < 0) throw std::runtime_error("no bus object");
  BusPtr result(made);
  if (sd_bus_set_address(made, bus.address().c_str()) < 0 || sd_bus_set_bus_client(made, 1) < 0 ||
      sd_bus_start(made) < 0) {
    throw std::runtime_error("the private bus does not answer");
  }
  return result;
}

void must(int result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
}

// A connection, and a call to the program over it.
std::pair<BusPtr, BusMessagePtr> callTo(const PrivateBus& bus, const FakeProgramProcess& program,
                                        const char* member) {
  BusPtr connection = connect(bus);
  sd_bus_message* made = nullptr;
  must(
      sd_bus_message_new_method_call(connection.get(), &made, program.busName(),
                                     "/org/a11y/atspi/accessible/root", "org.vellora.Test", member),
      member);
  return {std::move(connection), BusMessagePtr(made)};
}

}  // namespace

ChildProcess::ChildProcess(const std::function<void(const std::function<void()>&)>& body) {
  std::array<int, 2> signal{};
  if (pipe2(signal.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("no process");
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    try {
      body([&] {
        if (write(signal[1], "r", 1) != 1) _exit(1);
      });
    } catch (const std::exception& error) {
      std::fprintf(stderr, "child process: %s\n", error.what());
    }
    _exit(1);
  }
  close(signal[1]);
  pollfd input{signal[0], POLLIN, 0};
  char byte = 0;
  const bool isReady = poll(&input, 1, startTimeout) > 0 && read(signal[0], &byte, 1) == 1;
  close(signal[0]);
  if (!isReady) {
    kill();
    throw std::runtime_error("a child process did not come up");
  }
}

ChildProcess::~ChildProcess() { kill(); }

void ChildProcess::stop() const {
  ::kill(pid_, SIGSTOP);
  waitpid(pid_, nullptr, WUNTRACED);
}

void ChildProcess::resume() const { ::kill(pid_, SIGCONT); }

void ChildProcess::kill() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

PrivateBus::PrivateBus(const std::string& limits) {
  std::string name = (std::filesystem::temp_directory_path() / "vellora-bus-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = name;
  const std::string configuration = folder_ + "/bus.conf";
  const std::string socket = folder_ + "/socket";
  std::ofstream(configuration)
      << R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=)"
      << socket << R"(</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
)" << limits
      << "</busconfig>\n";
  address_ = "unix:path=" + socket;
  const std::string option = "--config-file=" + configuration;
  daemon_ = std::make_unique<ChildProcess>([&](const std::function<void()>& ready) {
    // The daemon's own word that it listens is its address on a pipe.
    std::array<int, 2> output{};
    if (pipe(output.data()) != 0) return;
    const pid_t daemon = fork();
    if (daemon == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      const int log = open((folder_ + "/log").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
      if (log >= 0) dup2(log, STDERR_FILENO);
      const std::string print = "--print-address=" + std::to_string(output[1]);
      execlp("dbus-daemon", "dbus-daemon", option.c_str(), "--nofork", "--nopidfile", print.c_str(),
             nullptr);
      _exit(127);
    }
    char byte = 0;
    close(output[1]);
    if (read(output[0], &byte, 1) == 1) ready();
    waitpid(daemon, nullptr, 0);
  });
  setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
  const BusPtr bus = connect(*this);
  sd_bus_message* answer = nullptr;
  sd_bus_call_method(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                     "org.freedesktop.DBus", "GetConnectionUnixProcessID", nullptr, &answer, "s",
                     "org.freedesktop.DBus");
  const BusMessagePtr reply(answer);
  std::uint32_t process = 0;
  if (reply && sd_bus_message_read(reply.get(), "u", &process) > 0) {
    daemonProcess_ = static_cast<pid_t>(process);
  }
}

void PrivateBus::stop() const { ::kill(daemonProcess_, SIGSTOP); }

void PrivateBus::resume() const { ::kill(daemonProcess_, SIGCONT); }

PrivateBus::~PrivateBus() {
  daemon_.reset();
  std::filesystem::remove_all(folder_);
}

std::size_t PrivateBus::connections() const {
  const BusPtr bus = connect(*this);
  sd_bus_message* answer = nullptr;
  sd_bus_call_method(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                     "org.freedesktop.DBus", "ListNames", nullptr, &answer, "");
  const BusMessagePtr reply(answer);
  std::size_t count = 0;
  const char* name = nullptr;
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "s") <= 0) return count;
  while (sd_bus_message_read(reply.get(), "s", &name) > 0) count += *name == ':';
  return count - 1;
}

// The daemon numbers its clients: ":1.0", ":1.1" and so on.
std::size_t PrivateBus::connectionsMade() const {
  const BusPtr bus = connect(*this);
  const char* name = nullptr;
  if (sd_bus_get_unique_name(bus.get(), &name) < 0) throw std::runtime_error("no unique name");
  return std::stoul(std::string(name).substr(3)) + 1;
}

std::size_t PrivateBus::matchRules(const std::string& sender) const {
  const BusPtr bus = connect(*this);
  sd_bus_message* answer = nullptr;
  sd_bus_call_method(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                     "org.freedesktop.DBus.Debug.Stats", "GetAllMatchRules", nullptr, &answer, "");
  const BusMessagePtr reply(answer);
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "{sas}") <= 0) {
    throw std::runtime_error("the daemon does not tell its match rules");
  }
  std::size_t count = 0;
  const char* text = nullptr;
  while (sd_bus_message_enter_container(reply.get(), 'e', "sas") > 0) {
    sd_bus_message_read(reply.get(), "s", &text);
    sd_bus_message_enter_container(reply.get(), 'a', "s");
    while (sd_bus_message_read(reply.get(), "s", &text) > 0) {
      count += std::string_view(text).find("sender='" + sender + "'") != std::string_view::npos;
    }
    sd_bus_message_exit_container(reply.get());
    sd_bus_message_exit_container(reply.get());
  }
  return count;
}

void setEnabled(const PrivateBus& bus, bool isEnabled) {
  const BusPtr connection = connect(bus);
  sd_bus_set_property(connection.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status",
                      "IsEnabled", nullptr, "b", isEnabled ? 1 : 0);
}

bool isEnabled(const PrivateBus& bus) {
  const BusPtr connection = connect(bus);
  int value = 0;
  sd_bus_get_property_trivial(connection.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status",
                              "IsEnabled", nullptr, 'b', &value);
  return value != 0;
}

void FakeProgramProcess::change(std::size_t object, const FakeAccessible& now, const char* property,
                                std::uint32_t times) {
  const auto [connection, call] = callTo(bus_, *this, "Change");
  must(sd_bus_message_append(call.get(), "tusssbsu", std::uint64_t{object}, now.role,
                             now.name.c_str(), now.description.c_str(), now.identifier.c_str(),
                             int{now.answersWrongTypes}, property, times),
       "Change");
  const std::vector<std::uint64_t> children(now.children.begin(), now.children.end());
  must(sd_bus_message_append_array(call.get(), 't', children.data(),
                                   children.size() * sizeof(children[0])),
       "Change");
  must(sd_bus_call(connection.get(), call.get(), 0, nullptr, nullptr), "Change");
}

void FakeProgramProcess::put(std::size_t object, const FakeAccessible& now) {
  const auto [connection, call] = callTo(bus_, *this, "Put");
  const auto extents = now.extents.value_or(std::array<std::int32_t, 4>());
  must(sd_bus_message_append(
           call.get(), "tusssssssbbtbiiii", std::uint64_t{object}, now.role, now.name.c_str(),
           now.description.c_str(), now.identifier.c_str(), now.classes.c_str(),
           now.attributeId.c_str(), now.text.value_or("").c_str(), now.address.value_or("").c_str(),
           int{now.text.has_value()}, int{now.address.has_value()}, now.states,
           int{now.extents.has_value()}, extents[0], extents[1], extents[2], extents[3]),
       "Put");
  const std::vector<std::uint64_t> children(now.children.begin(), now.children.end());
  must(sd_bus_message_append_array(call.get(), 't', children.data(),
                                   children.size() * sizeof(std::uint64_t)),
       "Put");
  must(sd_bus_call(connection.get(), call.get(), 0, nullptr, nullptr), "Put");
}

void FakeProgramProcess::play(const std::string& name, const std::optional<FakeMedia>& now) {
  const auto [connection, call] = callTo(bus_, *this, "Play");
  const FakeMedia media = now.value_or(FakeMedia());
  must(sd_bus_message_append(call.get(), "sbss", name.c_str(), int{now.has_value()},
                             media.title.c_str(), media.status.c_str()),
       "Play");
  sd_bus_message_open_container(call.get(), 'a', "s");
  for (const std::string& artist : media.artists) {
    sd_bus_message_append(call.get(), "s", artist.c_str());
  }
  sd_bus_message_close_container(call.get());
  must(sd_bus_call(connection.get(), call.get(), 0, nullptr, nullptr), "Play");
}

}  // namespace vellora
