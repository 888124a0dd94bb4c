#include "platform/linux/accessibility/program_memory.h"

#include <algorithm>
#include <utility>

#include "platform/linux/accessibility/attribute_mapping.h"
#include "platform/linux/accessibility/program_registry.h"

namespace vellora {

namespace {

// A window that can be read to its end has far fewer objects. More are not worth their room.
constexpr std::size_t mostRemembered = 5000;

bool isUnanswered(const AccessibleFacts& facts) {
  return (facts.role.isTold() && !facts.role.value) ||
         (facts.properties.isTold() && !facts.properties.value) ||
         (facts.children.isTold() && !facts.children.value) || facts.isListPartial;
}

// GTK 3's list boxes, flow boxes and tree views have the state MANAGES_DESCENDANTS, and
// at-spi2-core (atk-adaptor) passes on no ChildrenChanged of such objects.
bool signalsItsChildren(const AccessibleNode& node) {
  const auto& role = node.facts.role.value;
  return role != AtspiRole::listBox && role != AtspiRole::table && role != AtspiRole::tree &&
         role != AtspiRole::treeTable;
}

// A row of a list box is an element like others. The cells of tree views, which share their roles
// with flow boxes, are made for who asks, and signal nothing.
bool signalsWhatIsInside(const AccessibleNode& node) {
  return signalsItsChildren(node) || node.facts.role.value == AtspiRole::listBox;
}

}  // namespace

// GTK 3 calls itself "gtk", GTK 4 "GTK". Of other toolkits it is not known which changes they
// signal.
void ProgramMemory::setProgram(Program program) {
  if (program.toolkit != "gtk") {
    changes_.end();
  } else if (!changes_.isTold(program.root.bus)) {
    changes_.begin(program.root);
  }
  program_ = std::move(program);
  programAsked_ = Steady::now();
  lastAnswer_ = programAsked_;
}

void ProgramMemory::forgetProgram() {
  changes_.end();
  program_.reset();
  lastWindow_.reset();
  forgetFacts();
}

NodeIndex ProgramMemory::root() { return store_.intern(program_->root, std::nullopt); }

std::vector<NodeIndex> ProgramMemory::windows() const {
  const auto root = program_ ? store_.find(program_->root) : std::nullopt;
  if (!root) return {};
  return store_[*root].facts.children.value.value_or(std::vector<NodeIndex>());
}

void ProgramMemory::beginReading() {
  bus_.allowDirect(false);
  renewal_.beginReading();
  renews_ = false;
  for (NodeIndex node = 0; node < store_.size(); ++node) store_[node].moment = {};
}

// An answer that came directly may be about what was before a signal that comes later. It is
// forgotten with that signal all the same: of what is asked after the signals were taken in every
// change comes in a later reading. That holds from when the program tells of its changes, and so
// nothing is asked directly before.
void ProgramMemory::goDirect() {
  bus_.allowDirect(program_ && changes_.isTold(program_->root.bus));
}

void ProgramMemory::forgetOld() {
  renews_ = true;
  if (Steady::now() - programAsked_ < longest_ && !renewal_.isOverdue()) return;
  program_.reset();
  forgetFacts();
}

void ProgramMemory::renew(AccessibleQueries& queries) {
  if (!renews_ || !program_ || !changes_.isTold(program_->root.bus)) return;
  renewal_.renew(store_, queries);
  if (Steady::now() - programAsked_ >= longest_ * FactRenewal::spread) renewProgram();
}

// Which process a name on the bus is of never changes, nor does what it calls its toolkit.
void ProgramMemory::renewProgram() {
  askPrograms(bus_, [this, asked = Steady::now()](const ProgramList& registered) {
    if (!registered) return;
    programAsked_ = *registered == program_->registered ? asked : asked - longest_;
  });
}

void ProgramMemory::noteSilence() {
  if (Steady::now() - lastAnswer_ >= longest_) forgetProgram();
}

void ProgramMemory::takeInChanges() {
  lastAnswer_ = Steady::now();
  forgetChanged(changes_.take());
  forgetChanged(renewal_.take());
}

void ProgramMemory::forgetChanged(const AccessibleChanges& changes) {
  if (changes.everything) return forgetFacts();
  for (const std::string& path : changes.objects) {
    const auto node = store_.find({program_->root.bus, path});
    if (!node) return forgetFacts();  // it may be one that a known object has its name from
    forgetFacts(*node);
  }
}

void ProgramMemory::endReading() {
  bus_.allowDirect(false);
  const auto found = windows();
  if (!found.empty()) lastWindow_ = store_[found.front()].reference;
  const std::string address = changes_.takeAddress();
  if (program_ && !address.empty() && mayGoDirect_) {
    bus_.linkDirectly(program_->root.bus, program_->root.path, address, processIdentifier_);
  }
  if (!program_ || !changes_.isTold(program_->root.bus) || store_.size() > mostRemembered) {
    return forgetFacts();
  }
  const auto isForeign = [this](NodeIndex node) {
    return store_[node].reference.bus != program_->root.bus;
  };
  if (std::ranges::any_of(found, isForeign)) return forgetFacts();  // nor are states in order

  std::vector<bool> isUntold(store_.size());
  for (NodeIndex node = 0; node < store_.size(); ++node) {
    const AccessibleNode& here = store_[node];
    const bool isInUntold = here.parent && isUntold[*here.parent];
    isUntold[node] = isInUntold || isForeign(node) || !signalsWhatIsInside(here);
    if (isUntold[node] || !signalsItsChildren(here) || isUnanswered(here.facts)) {
      store_[node].facts.children = {};
      store_[node].isFramed = !isUntold[node] && here.isFramed;
      forgetFacts(node);
    }
  }
  renewal_.remember(store_.size());
}

void ProgramMemory::forgetFacts() {
  store_ = {};
  renewal_.forget();
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
