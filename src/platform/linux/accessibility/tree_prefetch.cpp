#include "platform/linux/accessibility/tree_prefetch.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

namespace {

// Calls that one round of planning lines up.
constexpr std::size_t mostPerRound = 16;

// In walks, the elements asked in all: a tree that keeps its first branches for last makes
// prefetching useless, and is then read element by element.
constexpr std::size_t mostWalksAsked = 3;

// In walks, the elements looked through for one volley of extents: as many as a walk can have
// behind it and as many as it can have ahead. Branches that lead back into themselves have more.
constexpr std::size_t mostWalksLookedThrough = 2;

std::size_t elementsOf(std::size_t walks, const ReadingLimits& limits) {
  return walks * static_cast<std::size_t>(limits.elements);
}

}  // namespace

bool TreePrefetch::mayHaveFrame(const AccessibleNode& node) const {
  const auto& role = node.facts.role.value;
  const std::string_view text = role ? roleText(*role) : std::string_view();
  return text == player_.rowRole || text == player_.viewportRole;
}

// One pass over what is known of the tree, in the walk's order. An element whose children are not
// known yet counts as many elements as it says it has, so that what the walk cannot reach behind it
// is left alone.
struct TreePrefetch::Plan {
  std::size_t position = 0;
  std::size_t most = 0;
  std::size_t calls = 0;

  bool isFull() const { return position >= most || calls >= mostPerRound; }
};

void TreePrefetch::askFacts(NodeIndex top, int depth, std::size_t most, Steady::time_point end,
                            Steady::time_point deadline) {
  bus_.exchange(deadline, [&] {
    if (Steady::now() >= end) return;
    Plan plan{.most = most};
    planFacts(top, depth, plan);
  });
}

void TreePrefetch::planFacts(NodeIndex node, int depth, Plan& plan) {
  if (plan.isFull() || depth > limits_.depth) return;
  ++plan.position;
  const AccessibleFacts& facts = store_[node].facts;
  if (facts.properties.isUnasked()) {
    if (asked_ >= elementsOf(mostWalksAsked, limits_)) return;
    ++asked_;
    queries_.askProperties(node);
    if (facts.role.isUnasked()) queries_.askRole(node);
    plan.calls += 2;
    return;
  }
  if (!facts.properties.isTold() || depth == limits_.depth) return;
  if (facts.children.isUnasked()) {
    queries_.askChildren(node);
    ++plan.calls;
  }
  if (!facts.children.isTold()) {
    const auto& known = facts.properties.value;
    plan.position +=
        static_cast<std::size_t>(std::max(known ? known->childCount.value_or(0) : 0, 0));
    return;
  }
  if (!facts.children.value) return;
  for (std::size_t i = 0; i < store_[node].facts.children.value->size(); ++i) {
    planFacts((*store_[node].facts.children.value)[i], depth + 1, plan);
    if (plan.isFull()) return;
  }
}

// The elements that a walk will want the extents of, in its order.
struct TreePrefetch::Volley {
  NodeIndex first;
  std::size_t most;
  std::size_t mostLookedThrough;
  bool isBegun = false;
  std::size_t position = 0;
  std::size_t lookedThrough = 0;
  std::vector<NodeIndex> wanted{};

  bool isFull() const { return position > most || lookedThrough >= mostLookedThrough; }
};

void TreePrefetch::askExtents(NodeIndex node, std::size_t most, Steady::time_point deadline) {
  NodeIndex top = node;
  const auto& role = store_[node].facts.role.value;
  if (!role || roleText(*role) != player_.viewportRole) {
    ++climbs_;
    for (int i = 0; i < climbs_ && store_[top].parent; ++i) top = *store_[top].parent;
  }
  Volley volley{.first = node,
                .most = most,
                .mostLookedThrough = elementsOf(mostWalksLookedThrough, limits_)};
  planExtents(top, 0, volley);
  exchangeExtents(node, volley.wanted, deadline);
}

void TreePrefetch::askKnownExtents(NodeIndex window, Steady::time_point deadline,
                                   const std::function<void()>& more) {
  std::vector<NodeIndex> known;
  for (NodeIndex node = 0; node < store_.size(); ++node) {
    if (store_[node].isFramed) known.push_back(node);
  }
  exchangeExtents(window, known, deadline, more);
}

void TreePrefetch::exchangeExtents(NodeIndex first, const std::vector<NodeIndex>& others,
                                   Steady::time_point deadline, const std::function<void()>& more) {
  // Half of the time is left for what a slow program does not answer in the first half.
  const auto begin = Steady::now();
  const auto end = begin + (deadline - begin) / 2;
  queries_.askExtents(first);
  auto next = others.begin();
  bool isMoreTold = !more;
  bus_.exchange(deadline, [&] {
    for (std::size_t i = 0; i < mostPerRound && next != others.end(); ++i, ++next) {
      if (Steady::now() >= end) return;
      if (store_[*next].moment.extents.isUnasked()) queries_.askExtents(*next);
    }
    if (next == others.end() && !std::exchange(isMoreTold, true)) more();
  });
}

void TreePrefetch::planExtents(NodeIndex node, int depth, Volley& volley) {
  if (volley.isFull() || depth > limits_.depth) return;
  ++volley.lookedThrough;
  if (node == volley.first) volley.isBegun = true;
  if (volley.isBegun && ++volley.position > volley.most) return;
  const AccessibleNode& here = store_[node];
  if (volley.isBegun && here.moment.extents.isUnasked() && mayHaveFrame(here)) {
    volley.wanted.push_back(node);
  }
  if (!here.facts.children.value) return;
  for (const NodeIndex child : *here.facts.children.value) {
    planExtents(child, depth + 1, volley);
    if (volley.isFull()) return;
  }
}

}  // namespace vellora
