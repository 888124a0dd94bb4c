#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/change_watch.h"

namespace vellora {

// Asks anew what earlier readings found out of a GTK 3 program's objects, for the changes that
// nobody signals: a part of the objects with each reading, so that none is older than `longest` and
// no reading has to ask for all of them. An object's age is the time since the beginning of the
// reading that asked for all its facts. One thread at a time.
class FactRenewal {
 public:
  // How long an answer may be believed; asked again after `spread` of that time.
  static constexpr double spread = 0.8;

  explicit FactRenewal(Steady::duration longest) : longest_(longest) {}

  void beginReading() { reading_ = Steady::now(); }
  // Whether facts are older than they may be.
  bool isOverdue() const;
  // Lines up this reading's part of the questions. The store has known facts of the objects that
  // `remember` was told of; it and this object outlive the next exchange.
  void renew(AccessibleStore& store, AccessibleQueries& queries);
  // What has been found changed since the last call.
  AccessibleChanges take() { return std::exchange(changes_, {}); }

  // The reading is over; the store has so many objects.
  void remember(std::size_t objects);
  // The store is empty again.
  void forget();

 private:
  struct Age {
    Steady::time_point asked;
    std::uint8_t open = 0;  // answers that are still to come
  };

  void renew(NodeIndex node, AccessibleStore& store, AccessibleQueries& queries);
  void settle(NodeIndex node);

  Steady::duration longest_;
  Steady::time_point reading_;
  Steady::time_point renewed_;
  std::vector<Age> ages_;  // by object
  NodeIndex next_ = 0;
  AccessibleChanges changes_;
};

}  // namespace vellora
