#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vellora {

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

  // What a page shows beside that: nothing where the interface is missing.
  std::optional<std::string> text{};     // org.a11y.atspi.Text
  std::optional<std::string> address{};  // org.a11y.atspi.Document, "DocURL"
  std::string classes{};                 // attributes
  std::string attributeId{};
};

// What a program plays, as a media player of its own (MPRIS2).
struct FakeMedia {
  std::string title{};
  std::vector<std::string> artists{};
  std::string status = "Playing";
};

// The bus of its own that a program tells of when it is asked.
enum class OwnBus {
  missing,  // there is nothing where it says
  open,     // as programs of GTK 3 have it
  mute,     // nobody takes up connections, and so nobody answers
  // As `open`, and when `CallCounts::ownBusIsOver` says so:
  ends,     // it closes its connections
  babbles,  // the same, but with words of no meaning first
  hangs,    // it answers no more
};

// A program with a tree; its first object is the root, whose children are the windows.
struct FakeProgram {
  std::vector<FakeAccessible> objects;
  std::string toolkit = "gtk";
  // Whether it is asked for its own bus in vain, and so has nobody whom it would signal changes.
  bool tellsNobody = false;
  OwnBus ownBus = OwnBus::missing;
  std::optional<std::string> ownAddress{};   // that it tells in place of the right one
  bool hasCollection = false;                // answers org.a11y.atspi.Collection
  std::map<std::string, FakeMedia> media{};  // by the names after "org.mpris.MediaPlayer2."
  int microsecondsPerCall = 0;
  // After this many calls it stops itself or dies.
  std::optional<int> stopsAfter;
  std::optional<int> diesAfter;
};

}  // namespace vellora
