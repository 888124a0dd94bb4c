#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "platform/linux/accessibility/fake_program.h"

namespace vellora {

// A process made by fork that is killed and reaped at the end.
class ChildProcess {
 public:
  // `body` runs in the child and never returns; `ready` in it lets this constructor return.
  explicit ChildProcess(const std::function<void(const std::function<void()>& ready)>& body);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  void stop() const;    // SIGSTOP, and waits until it has stopped
  void resume() const;  // SIGCONT
  void kill();          // SIGKILL, and reaps it

 private:
  pid_t pid_ = -1;
};

// A dbus-daemon of the test's own that starts no services. For as long as it lives the environment
// names it as the session bus; it serves as the accessibility bus, too.
class PrivateBus {
 public:
  // `limits` are elements of the daemon's configuration.
  explicit PrivateBus(const std::string& limits = {});
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  const std::string& address() const { return address_; }
  // SIGSTOP and SIGCONT for the daemon.
  void stop() const;
  void resume() const;

  // Programs connected at present, the one that asks left out.
  std::size_t connections() const;
  // Programs that have connected so far, the one that asks among them.
  std::size_t connectionsMade() const;
  // Match rules of all programs that name this one as the sender.
  std::size_t matchRules(const std::string& sender) const;

 private:
  std::string folder_;
  std::string address_;
  std::unique_ptr<ChildProcess> daemon_;
  pid_t daemonProcess_ = -1;
};

// What the session's accessibility services are: org.a11y.Bus and the registry of programs.
struct FakeServices {
  bool isEnabled = true;
  std::string busAddress{};  // what GetAddress answers
  int failures = 0;          // the first so many questions are answered with an error
};
std::unique_ptr<ChildProcess> startServices(const PrivateBus& bus, const FakeServices& services);

// Sets IsEnabled of the fake services, which signal the change.
void setEnabled(const PrivateBus& bus, bool isEnabled);
bool isEnabled(const PrivateBus& bus);

// What the program was asked, counted in memory that it shares with the test.
struct CallCounts {
  std::atomic<int> all, getAll, get, role, children, childAtIndex, states, extents, busAddress;
  std::atomic<int> attributes, matches;
  // Over its own bus: calls, those for states among them, and connections that were made to it.
  std::atomic<int> direct, directStates, links;
  std::atomic<bool> ownBusIsOver;
  char busName[32];  // its unique name, written before it is ready
  // How the program is slow from now on. It takes in what it is asked only so often, as one that
  // paints in between; and it takes that long over each question to an object below its root.
  std::atomic<int> microsecondsBetweenTurns, microsecondsBelowRoot;
};

class FakeProgramProcess {
 public:
  FakeProgramProcess(const PrivateBus& bus, const FakeProgram& program);
  ~FakeProgramProcess();
  FakeProgramProcess(const FakeProgramProcess&) = delete;
  FakeProgramProcess& operator=(const FakeProgramProcess&) = delete;

  ChildProcess& process() { return *process_; }
  pid_t pid() const { return process_->pid(); }
  const char* busName() const { return counts_->busName; }

  // Has the object be as `now` from here on; what it shows of its place stays. The program signals
  // that the property (an ATK name) has changed, or with `childrenChanged` the list, that many
  // times; without a name nothing. Returns when the bus has the signals.
  static constexpr const char* childrenChanged = "children-changed";
  void change(std::size_t object, const FakeAccessible& now, const char* property = "",
              std::uint32_t times = 1);
  // Has the object, or the next new one, be as `now` in every respect, without a signal.
  void put(std::size_t object, const FakeAccessible& now);
  // Has the media player of that name play that; without one it leaves.
  void play(const std::string& name, const std::optional<FakeMedia>& now);
  CallCounts& counts() { return *counts_; }

 private:
  const PrivateBus& bus_;
  CallCounts* counts_;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace vellora
