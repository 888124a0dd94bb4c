#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/accessibility/answer_pace.h"
#include "platform/linux/accessibility/bus_handles.h"

namespace vellora {

using Steady = std::chrono::steady_clock;

inline Steady::duration steady(double seconds) {
  return std::chrono::duration_cast<Steady::duration>(std::chrono::duration<double>(seconds));
}

// Told once for each call: the reply, or null when there is none (an error, no answer in time, the
// connection lost). May send further calls, nothing else.
using ReplyHandler = std::function<void(sd_bus_message* reply)>;

// Told for each signal of a match. May send calls, nothing else.
using SignalHandler = std::function<void(sd_bus_message* signal)>;

// A client's connection to a D-Bus daemon, over which many calls are under way at once. Nothing
// here waits but `exchange` and `wait`. A peer that let a call time out counts as silent until it
// answers that call after all: it is asked nothing more meanwhile, so that a program that hangs is
// not heaped with questions. One of the peers may have a direct link beside that: its answers come
// sooner there, but in no order with its signals, which come from the daemon. One thread at a time.
class BusConnection {
 public:
  // The user's session bus, as the environment names it; null when that names none that answers.
  static std::unique_ptr<BusConnection> openSession();
  // The bus at a D-Bus address (D-Bus specification, "Server Addresses"); null as above.
  static std::unique_ptr<BusConnection> open(const std::string& address);

  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  // A method call that starts no service by itself; null when a name is ill-formed, which may come
  // from a peer. Null is then a call that gets no reply.
  BusMessagePtr newCall(const std::string& destination, const std::string& path,
                        const char* interface, const char* member);

  // Gives the peer, a process, a direct link to the server of its own at that D-Bus address; where
  // that cannot be, nothing happens. It is used once it has answered for the object of that path.
  // A link to another peer ends; the same peer's stays.
  void linkDirectly(const std::string& peer, const std::string& path, const std::string& address,
                    std::int32_t processIdentifier);
  void endDirectLink();
  // Whether calls that are made from now on go over the direct link, if any; at first they do not.
  // When they no longer do, a peer that is silent there may be asked over the daemon.
  void allowDirect(bool isAllowed);

  // Sends the call when there is room among those under way.
  void send(BusMessagePtr call, ReplyHandler handler);

  // Has `handler` told of signals until the connection ends. `rule` is a D-Bus match rule. A call
  // that is sent later is answered after `installed` was told whether the daemon took the rule.
  void subscribe(const std::string& rule, SignalHandler handler,
                 std::function<void(bool isInstalled)> installed = {});

  // Ends all subscriptions, without waiting for the daemon.
  void unsubscribe() { matches_.clear(); }

  // Sends, receives and waits until every call was told or the deadline has passed; what is still
  // open then is told that there is no reply. `refill` is asked for more calls when few are left.
  void exchange(Steady::time_point deadline, const std::function<void()>& refill = {});

  // The same, but what is still open at the deadline stays under way.
  void wait(Steady::time_point deadline);

  // Sends and receives what can be without waiting, and leaves the rest under way.
  void pump();

  // How long a peer that owes answers may go without giving one before it counts as silent; at
  // first for ever.
  void setTimeout(Steady::duration timeout) { timeout_ = timeout; }

  // A peer to which that does not apply: it may take until an exchange's deadline. One at a time.
  void setPatientPeer(std::string busName) { patientPeer_ = std::move(busName); }

  bool isBroken() const { return broken_; }
  bool isSilent(const std::string& peer) const { return silent_.contains(peer); }

 private:
  struct Call {
    BusConnection* connection = nullptr;
    std::string peer;
    bool isDirect = false;
    BusMessagePtr message;
    ReplyHandler handler;
    BusSlotPtr slot;
    Steady::time_point sent;
    bool told = false;
  };
  struct Match {
    SignalHandler handler;
    std::function<void(bool isInstalled)> installed;
    BusSlotPtr slot;
  };

  explicit BusConnection(BusPtr bus) : bus_(std::move(bus)) {}

  static int onReply(sd_bus_message* reply, void* call, sd_bus_error*);
  static int onSignal(sd_bus_message* signal, void* match, sd_bus_error*);
  static int onMatchInstalled(sd_bus_message* reply, void* match, sd_bus_error*);
  static void tell(Call& call, sd_bus_message* reply);

  bool isDirect(const std::string& peer) const;
  bool processDirect();
  void sendWaiting();
  bool process();  // true when there may be more at once
  void run(Steady::time_point deadline, const std::function<void()>& refill);
  void sleep(Steady::time_point until, std::size_t answers);  // that have come since it slept
  // When the peer counts as silent unless it has answered the call or another one.
  std::optional<Steady::time_point> overdueAt(const Call& call) const;
  void expire(Steady::time_point now);
  void silence(const std::string& peer);
  void hearSilent();
  void dropTold();
  void giveUp();

  BusPtr bus_;
  BusPtr direct_;
  std::string directPeer_;
  std::unique_ptr<Call> proof_;  // nothing is asked over the link until this is answered
  bool isProven_ = false;
  bool allowsDirect_ = false;
  bool broken_ = false;
  Steady::duration timeout_ = Steady::duration::max();
  std::string patientPeer_;
  std::deque<Call> waiting_;
  std::deque<Call> underWay_;  // in the order of sending
  std::map<std::string, std::unique_ptr<Call>, std::less<>> silent_;
  std::map<std::string, Steady::time_point, std::less<>> lastHeard_;  // in this run
  AnswerPace pace_;
  std::vector<std::unique_ptr<Match>> matches_;
};

}  // namespace vellora
