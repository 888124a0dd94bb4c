#include "platform/linux/accessibility/accessible_store.h"

#include <utility>

namespace vellora {

NodeIndex AccessibleStore::intern(AccessibleReference reference, std::optional<NodeIndex> parent) {
  const auto next = static_cast<NodeIndex>(nodes_.size());
  const auto [entry, isNew] = indices_.try_emplace(reference, next);
  if (isNew) nodes_.push_back({std::move(reference), parent, {}, {}, false});
  return entry->second;
}

std::optional<NodeIndex> AccessibleStore::find(const AccessibleReference& reference) const {
  const auto entry = indices_.find(reference);
  if (entry == indices_.end()) return std::nullopt;
  return entry->second;
}

}  // namespace vellora
