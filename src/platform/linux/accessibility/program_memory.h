#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/environment.h"
#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/change_watch.h"
#include "platform/linux/accessibility/fact_renewal.h"

namespace vellora {

// What one reading of a process's program leaves to the next: which program it is, and the facts of
// its objects for as long as it tells of every change to them. Whatever is in doubt is forgotten,
// and so asked again: nothing that the program shows may be missed, a question too many does no
// harm. Belongs to one connection. One thread at a time.
class ProgramMemory {
 public:
  // `longest` is how long something is believed without having been asked again, for changes that
  // nobody signals. With VELLORA_DIRECT_LINK=off all questions go over the bus.
  ProgramMemory(BusConnection& bus, std::int32_t processIdentifier, Steady::duration longest)
      : bus_(bus),
        processIdentifier_(processIdentifier),
        longest_(longest),
        mayGoDirect_(environmentVariable("VELLORA_DIRECT_LINK") != "off"),
        changes_(bus),
        renewal_(longest) {}
  ~ProgramMemory() { bus_.endDirectLink(); }
  ProgramMemory(const ProgramMemory&) = delete;
  ProgramMemory& operator=(const ProgramMemory&) = delete;

  std::int32_t processIdentifier() const { return processIdentifier_; }
  AccessibleStore& store() { return store_; }

  // The program's root object, what its toolkit calls itself, and the roots of all programs that
  // the registry knew when it was found; nothing when it is to be found (again).
  struct Program {
    AccessibleReference root;
    std::optional<std::string> toolkit;
    std::vector<AccessibleReference> registered;
  };
  const std::optional<Program>& program() const { return program_; }
  // Lines up the questions that must be answered for facts of the program to be remembered, where
  // they were not yet.
  void setProgram(Program program);
  void forgetProgram();

  // The program's root object in the store.
  NodeIndex root();
  // The program's windows in its order; empty when they have to be asked for.
  std::vector<NodeIndex> windows() const;
  // A window that the last reading found, for the question whether the program answers at all.
  const std::optional<AccessibleReference>& lastWindow() const { return lastWindow_; }

  // Forgets what is of the moment. Questions go over the bus from here on: the answers to them come
  // behind the signals of all that was before.
  void beginReading();
  // Has the questions take the shortest way from here on, where the program tells of every change
  // to what they are about.
  void goDirect();
  // Forgets everything where something is too old, and has a part of it asked again in this
  // reading.
  void forgetOld();
  // Lines up the questions for that part: what may have changed without a signal. What they find
  // changed is forgotten when changes are taken in next.
  void renew(AccessibleQueries& queries);
  // The program owes an answer. Forgets it when it has for longer than something is believed:
  // signals of a program that is not read would gather at the bus.
  void noteSilence();
  // The program has answered over the bus: forgets the facts that have changed, as far as signals
  // have come. The answer to any question that was put in this reading over the bus comes after
  // all signals of the changes before it.
  void takeInChanges();
  // Forgets what was not answered, and what the program would not tell of. A program that has a bus
  // of its own gets a direct link, for the readings to come.
  void endReading();

 private:
  void forgetFacts();
  void forgetFacts(NodeIndex node);
  void forgetChanged(const AccessibleChanges& changes);
  void renewProgram();

  BusConnection& bus_;
  std::int32_t processIdentifier_;
  Steady::duration longest_;
  bool mayGoDirect_;
  std::optional<Program> program_;
  Steady::time_point programAsked_;
  Steady::time_point lastAnswer_;
  std::optional<AccessibleReference> lastWindow_;
  ChangeWatch changes_;
  AccessibleStore store_;
  FactRenewal renewal_;
  bool renews_ = false;  // in this reading
};

}  // namespace vellora
