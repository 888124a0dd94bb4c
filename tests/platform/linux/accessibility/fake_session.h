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
};

// What the session's accessibility services are: org.a11y.Bus and the registry of programs.
struct FakeServices {
  bool isEnabled = true;
  std::string busAddress{};  // what GetAddress answers
};
std::unique_ptr<ChildProcess> startServices(const PrivateBus& bus, const FakeServices& services);

// Sets IsEnabled of the fake services, which signal the change.
void setEnabled(const PrivateBus& bus, bool isEnabled);
bool isEnabled(const PrivateBus& bus);

// One object of a fake program. Children are places in the program's list of objects.
struct FakeAccessible {
  static constexpr std::size_t nullChild = SIZE_MAX;         // the reference to no object
  static constexpr std::size_t goneChild = SIZE_MAX - 1;     // an object that is not there
  static constexpr std::size_t foreignChild = SIZE_MAX - 2;  // of a program that is not there

  std::uint32_t role = 39;  // panel
  std::string name{};
  std::string description{};
  std::string identifier{};
  std::vector<std::size_t> children{};
  std::string busOfFirstChild{};  // where that is an object of another program
  std::optional<std::array<std::int32_t, 4>> extents{};
  std::uint64_t states = 0;
  bool answersWrongTypes = false;
  bool nameIsANumber = false;  // and all else is as it should be
  std::optional<std::int32_t> claimedChildCount{};
  // In place of `children`: this many, each an object of its own that is as the one named.
  std::size_t copies = 0;
  std::size_t copyOf = 0;
};

// A program with a tree; its first object is the root, whose children are the windows.
struct FakeProgram {
  std::vector<FakeAccessible> objects;
  std::string toolkit = "gtk";
  // Whether it is asked for its own bus in vain, and so has nobody whom it would signal changes.
  bool tellsNobody = false;
  int microsecondsPerCall = 0;
  // After this many calls it stops itself or dies.
  std::optional<int> stopsAfter;
  std::optional<int> diesAfter;
};

// What the program was asked, counted in memory that it shares with the test.
struct CallCounts {
  std::atomic<int> all, getAll, get, role, children, childAtIndex, states, extents, busAddress;
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
  CallCounts& counts() { return *counts_; }

 private:
  const PrivateBus& bus_;
  CallCounts* counts_;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace vellora
