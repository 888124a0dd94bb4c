#include "platform/linux/accessibility/fact_renewal.h"

#include <algorithm>
#include <chrono>

#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

namespace {

// ATK (atk_object_set_role) tells of every change of a role but that from unknown.
bool signalsItsRole(const AccessibleFacts& facts) {
  return facts.role.value && *facts.role.value != AtspiRole::unknown;
}

}  // namespace

bool FactRenewal::isOverdue() const {
  return std::ranges::any_of(ages_,
                             [this](const Age& age) { return reading_ - age.asked >= longest_; });
}

void FactRenewal::renew(AccessibleStore& store, AccessibleQueries& queries) {
  if (ages_.empty()) return;
  const std::chrono::duration<double> round = longest_ * spread;
  const auto each = std::chrono::ceil<Steady::duration>(round / static_cast<double>(ages_.size()));
  std::size_t asked = 0;
  for (; asked < ages_.size() && reading_ - renewed_ >= each; ++asked, renewed_ += each) {
    renew(next_, store, queries);
    next_ = static_cast<NodeIndex>((next_ + 1) % ages_.size());
  }
  if (asked == ages_.size()) renewed_ = reading_;
}

void FactRenewal::renew(NodeIndex node, AccessibleStore& store, AccessibleQueries& queries) {
  store[node].isFramed = false;  // until somebody wants to know where it is again
  const AccessibleFacts& facts = store[node].facts;
  const bool asksRole = facts.role.isTold() && !signalsItsRole(facts);
  const bool asksProperties = facts.properties.isTold();
  const bool asksChildren = facts.children.isTold();
  // One for this call itself, as some answers are known at once.
  ages_[node].open = static_cast<std::uint8_t>(1 + (asksRole ? 1 : 0) + (asksProperties ? 1 : 0) +
                                               (asksChildren ? 1 : 0));
  const auto take = [this, node, &store](AccessibleQueries::Difference found) {
    using enum AccessibleQueries::Difference;
    if (found == itself) changes_.objects.insert(store[node].reference.path);
    if (found == children) changes_.everything = true;
    settle(node);
  };
  if (asksRole) queries.compareRole(node, take);
  if (asksProperties) queries.compareProperties(node, take);
  if (asksChildren) queries.compareChildren(node, take);
  settle(node);
}

void FactRenewal::settle(NodeIndex node) {
  if (--ages_[node].open == 0) ages_[node].asked = reading_;
}

void FactRenewal::remember(std::size_t objects) {
  if (ages_.empty()) renewed_ = reading_;
  ages_.resize(objects, {.asked = reading_});
}

void FactRenewal::forget() {
  ages_.clear();
  next_ = 0;
  changes_ = {};
}

}  // namespace vellora
