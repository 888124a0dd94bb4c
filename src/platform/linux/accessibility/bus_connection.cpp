#include "platform/linux/accessibility/bus_connection.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "platform/linux/accessibility/bus_waiting.h"
#include "platform/linux/accessibility/direct_link.h"

namespace vellora {

namespace {

// Enough to keep both sides at work; few enough that they are soon answered.
constexpr std::size_t mostUnderWay = 32;

// So that a peer that floods the connection does not keep the caller.
constexpr int mostPerPump = 256;

// Answers over the direct link for one look at the daemon's connection, which is quiet meanwhile.
constexpr int mostDirectAtOnce = 8;

constexpr std::uint64_t noTimeout = UINT64_MAX;  // the timeouts are kept here, not by the library

}  // namespace

std::unique_ptr<BusConnection> BusConnection::openSession() {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return nullptr;
  return std::unique_ptr<BusConnection>(new BusConnection(BusPtr(opened)));
}

std::unique_ptr<BusConnection> BusConnection::open(const std::string& address) {
  sd_bus* made = nullptr;
  if (sd_bus_new(&made) < 0) return nullptr;
  BusPtr bus(made);
  if (sd_bus_set_address(bus.get(), address.c_str()) < 0) return nullptr;
  if (sd_bus_set_bus_client(bus.get(), 1) < 0) return nullptr;
  if (sd_bus_start(bus.get()) < 0) return nullptr;
  return std::unique_ptr<BusConnection>(new BusConnection(std::move(bus)));
}

BusMessagePtr BusConnection::newCall(const std::string& destination, const std::string& path,
                                     const char* interface, const char* member) {
  sd_bus_message* made = nullptr;
  sd_bus* const bus = isDirect(destination) ? direct_.get() : bus_.get();
  if (sd_bus_message_new_method_call(bus, &made, destination.c_str(), path.c_str(), interface,
                                     member) < 0) {
    return nullptr;
  }
  BusMessagePtr call(made);
  sd_bus_message_set_auto_start(call.get(), 0);
  return call;
}

void BusConnection::send(BusMessagePtr call, ReplyHandler handler) {
  const char* const destination = call ? sd_bus_message_get_destination(call.get()) : nullptr;
  std::string peer = destination != nullptr ? destination : "";
  const bool isDirect = call && sd_bus_message_get_bus(call.get()) != bus_.get();
  waiting_.push_back(
      {this, std::move(peer), isDirect, std::move(call), std::move(handler), {}, {}, false});
}

void BusConnection::subscribe(const std::string& rule, SignalHandler handler,
                              std::function<void(bool isInstalled)> installed) {
  auto match = std::make_unique<Match>();
  match->handler = std::move(handler);
  match->installed = std::move(installed);
  sd_bus_slot* slot = nullptr;
  if (sd_bus_add_match_async(bus_.get(), &slot, rule.c_str(), onSignal, onMatchInstalled,
                             match.get()) < 0) {
    if (match->installed) match->installed(false);
    return;
  }
  match->slot.reset(slot);
  matches_.push_back(std::move(match));
}

void BusConnection::exchange(Steady::time_point deadline, const std::function<void()>& refill) {
  run(deadline, refill);
  giveUp();
}

void BusConnection::wait(Steady::time_point deadline) {
  run(deadline, {});
  if (broken_) giveUp();
}

void BusConnection::run(Steady::time_point deadline, const std::function<void()>& refill) {
  lastHeard_.clear();
  hearSilent();
  pace_.beginVolley();
  std::size_t answers = 0;  // since it slept
  bool changed = true;
  for (;;) {
    if (refill && changed && waiting_.size() + underWay_.size() < mostUnderWay / 2) refill();
    sendWaiting();
    if (waiting_.empty() && underWay_.empty()) return;
    const auto now = Steady::now();
    if (broken_ || now >= deadline) return;
    expire(now);
    const std::size_t before = underWay_.size();
    const bool more = process();
    dropTold();
    changed = underWay_.size() != before;
    answers += before - underWay_.size();
    const bool full = underWay_.size() >= mostUnderWay;
    if (!more && !changed && !broken_ && (waiting_.empty() || full)) {
      sleep(deadline, std::exchange(answers, 0));
    }
  }
}

void BusConnection::pump() {
  for (int i = 0; i < mostPerPump; ++i) {
    sendWaiting();
    expire(Steady::now());
    if (!process()) break;
  }
  sendWaiting();
  dropTold();
  if (broken_) giveUp();
}

int BusConnection::onReply(sd_bus_message* reply, void* call, sd_bus_error*) {
  Call& answered = *static_cast<Call*>(call);
  answered.connection->lastHeard_.insert_or_assign(answered.peer, Steady::now());
  tell(answered, sd_bus_message_is_method_error(reply, nullptr) ? nullptr : reply);
  return 0;
}

int BusConnection::onSignal(sd_bus_message* signal, void* match, sd_bus_error*) {
  static_cast<Match*>(match)->handler(signal);
  return 0;
}

// A daemon that refuses the match sends no signals; the connection goes on without them.
int BusConnection::onMatchInstalled(sd_bus_message* reply, void* match, sd_bus_error*) {
  const Match& added = *static_cast<Match*>(match);
  if (added.installed) added.installed(!sd_bus_message_is_method_error(reply, nullptr));
  return 0;
}

void BusConnection::tell(Call& call, sd_bus_message* reply) {
  if (call.told) return;
  call.told = true;
  if (const ReplyHandler handler = std::exchange(call.handler, nullptr)) handler(reply);
}

void BusConnection::sendWaiting() {
  while (!waiting_.empty() && underWay_.size() < mostUnderWay) {
    underWay_.push_back(std::move(waiting_.front()));
    waiting_.pop_front();
    Call& call = underWay_.back();
    call.sent = Steady::now();
    sd_bus_slot* slot = nullptr;
    if (broken_ || !call.message || silent_.contains(call.peer) ||
        sd_bus_call_async(sd_bus_message_get_bus(call.message.get()), &slot, call.message.get(),
                          onReply, &call, noTimeout) < 0) {
      tell(call, nullptr);
    }
    call.slot.reset(slot);
    call.message.reset();
    dropTold();
  }
}

bool BusConnection::process() {
  const int result = sd_bus_process(bus_.get(), nullptr);
  if (result < 0) broken_ = true;
  bool hasDirect = processDirect();
  const bool more = hasDirect || result > 0;
  for (int i = 1; hasDirect && i < mostDirectAtOnce; ++i) hasDirect = processDirect();
  return more;
}

// Until something arrives, or a call is overdue. Among the answers of a volley it waits for several
// more, for the last of them at once: each time that it is woken costs more than an answer.
void BusConnection::sleep(Steady::time_point until, std::size_t answers) {
  const auto now = Steady::now();
  pace_.hear(answers, now);
  if (answers > 0 && underWay_.size() > 1) {
    // What is left is the end of the volley where no more calls came when few were under way.
    const std::size_t owed = underWay_.size();
    const bool isEnd = waiting_.empty() && owed < mostUnderWay / 2;
    const auto pause = isEnd ? pace_.untilAll(owed) : pace_.untilHalf(owed);
    return std::this_thread::sleep_until(std::min(until, now + pause));
  }
  if (!underWay_.empty()) until = std::min(until, overdueAt(underWay_.front()).value_or(until));
  if (!waitForEither(bus_.get(), direct_.get(), until)) broken_ = true;
}

void BusConnection::linkDirectly(const std::string& peer, const std::string& path,
                                 const std::string& address, std::int32_t processIdentifier) {
  if (direct_ && directPeer_ == peer) return;
  endDirectLink();
  direct_ = openDirectLink(address, processIdentifier);
  if (!direct_) return;
  directPeer_ = peer;
  sd_bus_message* made = nullptr;
  if (sd_bus_message_new_method_call(direct_.get(), &made, peer.c_str(), path.c_str(),
                                     "org.a11y.atspi.Accessible", "GetRole") < 0) {
    return endDirectLink();
  }
  const BusMessagePtr question(made);
  proof_ = std::make_unique<Call>();
  proof_->connection = this;
  proof_->peer = peer;
  proof_->isDirect = true;
  proof_->handler = [this](sd_bus_message* reply) { isProven_ = reply != nullptr; };
  sd_bus_slot* slot = nullptr;
  if (sd_bus_call_async(direct_.get(), &slot, made, onReply, proof_.get(), noTimeout) < 0) {
    return endDirectLink();
  }
  proof_->slot.reset(slot);
}

void BusConnection::endDirectLink() {
  for (Call& call : underWay_) {
    if (call.isDirect) tell(call, nullptr);
  }
  std::erase_if(silent_, [](const auto& entry) { return entry.second->isDirect; });
  proof_.reset();
  isProven_ = false;
  direct_.reset();
}

void BusConnection::allowDirect(bool isAllowed) {
  allowsDirect_ = isAllowed;
  dropTold();
  const auto silent = silent_.find(directPeer_);
  if (isAllowed || silent == silent_.end() || !silent->second->isDirect) return;
  isProven_ = false;
  proof_ = std::move(silent->second);
  silent_.erase(silent);
  // Any answer will do but the library's own, which says that the link has ended.
  proof_->handler = [this](sd_bus_message*) { isProven_ = sd_bus_is_open(direct_.get()) > 0; };
}

bool BusConnection::isDirect(const std::string& peer) const {
  return allowsDirect_ && direct_ && isProven_ && directPeer_ == peer;
}

bool BusConnection::processDirect() {
  if (!direct_) return false;
  const int result = sd_bus_process(direct_.get(), nullptr);
  if (result < 0) endDirectLink();
  return result != 0;
}

// A program takes its calls in turn, so the time of a call begins when the one before it is
// answered.
std::optional<Steady::time_point> BusConnection::overdueAt(const Call& call) const {
  if (timeout_ == Steady::duration::max() || call.peer == patientPeer_) return std::nullopt;
  const auto heard = lastHeard_.find(call.peer);
  const auto turn = heard == lastHeard_.end() ? call.sent : std::max(call.sent, heard->second);
  return turn + timeout_;
}

void BusConnection::expire(Steady::time_point now) {
  const auto overdue = underWay_.empty() ? std::nullopt : overdueAt(underWay_.front());
  if (!overdue || now < *overdue) return;
  const std::string peer = underWay_.front().peer;
  silence(peer);
  for (Call& call : underWay_) {
    if (call.peer == peer) tell(call, nullptr);
  }
  dropTold();
}

// Of the calls to a peer that has gone silent the last is kept: its answer shows that the peer has
// caught up.
void BusConnection::silence(const std::string& peer) {
  const auto last = std::find_if(underWay_.rbegin(), underWay_.rend(), [&](const Call& call) {
    return call.peer == peer && !call.told && call.slot;
  });
  if (last == underWay_.rend()) return;
  auto kept = std::make_unique<Call>();
  kept->connection = this;
  kept->peer = peer;
  kept->isDirect = last->isDirect;
  kept->slot = std::move(last->slot);
  sd_bus_slot_set_userdata(kept->slot.get(), kept.get());
  silent_.insert_or_assign(peer, std::move(kept));
}

// A peer that has caught up meanwhile is asked again.
void BusConnection::hearSilent() {
  for (int i = 0; i < mostPerPump && !silent_.empty() && process(); ++i) dropTold();
}

void BusConnection::dropTold() {
  while (!underWay_.empty() && underWay_.front().told) underWay_.pop_front();
  std::erase_if(silent_, [](const auto& entry) { return entry.second->told; });
}

void BusConnection::giveUp() {
  for (Call& call : underWay_) {
    if (!call.told && !broken_ && !silent_.contains(call.peer)) silence(call.peer);
    tell(call, nullptr);
  }
  underWay_.clear();
  while (!waiting_.empty()) {
    Call call = std::move(waiting_.front());
    waiting_.pop_front();
    tell(call, nullptr);
  }
}

}  // namespace vellora
