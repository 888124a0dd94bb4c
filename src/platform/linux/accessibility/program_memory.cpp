#include "platform/linux/accessibility/program_memory.h"

#include <utility>

#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

namespace {

// A window that can be read to its end has 700 objects. Many more are not worth their room.
constexpr std::size_t mostRemembered = 5000;

bool isUnanswered(const AccessibleFacts& facts) {
  return (facts.role.isTold() && !facts.role.value) ||
         (facts.properties.isTold() && !facts.properties.value) ||
         (facts.children.isTold() && !facts.children.value);
}

// Objects with these roles have the state MANAGES_DESCENDANTS in GTK 3 (its tree and icon views):
// of what is in them no signal comes.
bool managesDescendants(const AccessibleNode& node) {
  const auto& role = node.facts.role.value;
  return role == AtspiRole::table || role == AtspiRole::tree || role == AtspiRole::treeTable ||
         role == AtspiRole::layeredPane;
}

}  // namespace

// GTK 3 calls itself "gtk", GTK 4 "GTK". Of other toolkits it is not known which changes they
// signal.
void ProgramMemory::setProgram(Program program, BusConnection& bus) {
  if (program.toolkit == "gtk" && !isWatching_) {
    isWatching_ = true;
    changes_.begin(bus, program.root);
  }
  program_ = std::move(program);
}

void ProgramMemory::forgetProgram() {
  program_.reset();
  forgetFacts();
}

NodeIndex ProgramMemory::root() { return store_.intern(program_->root, std::nullopt); }

std::vector<NodeIndex> ProgramMemory::windows() const {
  const auto root = program_ ? store_.find(program_->root) : std::nullopt;
  if (!root) return {};
  return store_[*root].facts.children.value.value_or(std::vector<NodeIndex>());
}

void ProgramMemory::beginReading() {
  if (Steady::now() - factsBegan_ >= longest_) forgetFacts();
  for (NodeIndex node = 0; node < store_.size(); ++node) store_[node].moment = {};
}

void ProgramMemory::takeInChanges() {
  const AccessibleChanges changes = changes_.take();
  if (changes.everything) return forgetFacts();
  for (const std::string& path : changes.objects) {
    const auto node = store_.find({program_->root.bus, path});
    if (!node) return forgetFacts();  // it may be one that a known object has its name from
    forgetFacts(*node);
  }
}

void ProgramMemory::endReading() {
  if (!program_ || !changes_.isTold(program_->root.bus) || store_.size() > mostRemembered) {
    return forgetFacts();
  }
  std::vector<bool> isUntold(store_.size());
  for (NodeIndex node = 0; node < store_.size(); ++node) {
    const AccessibleNode& here = store_[node];
    const bool isInUntold = here.parent && isUntold[*here.parent];
    isUntold[node] =
        isInUntold || here.reference.bus != program_->root.bus || managesDescendants(here);
    if (isUntold[node] || isUnanswered(here.facts)) {
      store_[node].facts.children = {};
      forgetFacts(node);
    }
  }
}

void ProgramMemory::forgetFacts() {
  store_ = {};
  factsBegan_ = Steady::now();
}

// Objects may have their names from what is in them, as buttons have from their labels. It also
// leaves the window with a question open, at which the whole tree is asked at once.
void ProgramMemory::forgetFacts(NodeIndex node) {
  store_[node].facts.role = {};
  std::optional<NodeIndex> next = node;
  while (next) {
    store_[*next].facts.properties = {};
    next = store_[*next].parent;
  }
}

}  // namespace vellora
