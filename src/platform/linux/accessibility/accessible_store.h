#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vellora {

// Where an accessible object is: the bus name of its program and its object path. Compared as
// bytes.
struct AccessibleReference {
  std::string bus;
  std::string path;
  auto operator<=>(const AccessibleReference&) const = default;
};

using NodeIndex = std::uint32_t;

// What one question to an object has come to.
template <class Value>
struct Answer {
  enum class State { unasked, underWay, told };
  State state = State::unasked;
  std::optional<Value> value;  // nothing until told, and when the object did not answer

  bool isUnasked() const { return state == State::unasked; }
  bool isTold() const { return state == State::told; }
  void begin() { state = State::underWay; }
  void tell(std::optional<Value> answer) {
    state = State::told;
    value = std::move(answer);
  }
};

// org.a11y.atspi.Accessible's properties; each may be missing on its own.
struct AccessibleProperties {
  std::optional<std::string> name;
  std::optional<std::string> description;
  std::optional<std::string> identifier;
  std::optional<std::int32_t> childCount;
  bool operator==(const AccessibleProperties&) const = default;
};

struct AccessibleExtents {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  // Programs tell any numbers, and the sum of two may be larger than either can be.
  std::int64_t right() const { return std::int64_t{x} + width; }
  std::int64_t bottom() const { return std::int64_t{y} + height; }
};

// What an object shows until it signals a change.
struct AccessibleFacts {
  Answer<std::uint32_t> role;
  Answer<AccessibleProperties> properties;
  Answer<std::vector<NodeIndex>> children;
  bool isListPartial = false;  // of a list asked for child by child some answers are missing
};

// What changes without a signal, or must be fresh.
struct AccessibleMoment {
  Answer<std::uint64_t> states;
  Answer<AccessibleExtents> extents;
};

struct AccessibleNode {
  AccessibleReference reference;
  std::optional<NodeIndex> parent;  // in whose list it was met first
  AccessibleFacts facts;
  AccessibleMoment moment;
  bool isFramed = false;  // a reading wanted its extents
};

// The objects that were met, each once, whatever cycles their lists form. A parent comes before its
// children. References to nodes hold until the next `intern`.
class AccessibleStore {
 public:
  NodeIndex intern(AccessibleReference reference, std::optional<NodeIndex> parent);

  std::optional<NodeIndex> find(const AccessibleReference& reference) const;

  AccessibleNode& operator[](NodeIndex node) { return nodes_[node]; }
  const AccessibleNode& operator[](NodeIndex node) const { return nodes_[node]; }
  std::size_t size() const { return nodes_.size(); }

 private:
  std::vector<AccessibleNode> nodes_;
  std::map<AccessibleReference, NodeIndex> indices_;
};

}  // namespace vellora
