#include "platform/linux/accessibility/accessible_queries.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/accessibility/accessible_replies.h"

namespace vellora {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* component = "org.a11y.atspi.Component";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

constexpr std::uint32_t screenCoordinates = 0;  // AtspiCoordType

// What several calls bring together; `open` of them have not been told.
template <class Value>
struct Gathered {
  Value value;
  std::size_t open = 0;
};

}  // namespace

void AccessibleQueries::askRole(NodeIndex node) {
  store_[node].facts.role.begin();
  bus_.send(call(node, accessible, "GetRole"), [this, node](sd_bus_message* reply) {
    store_[node].facts.role.tell(readNumber(reply));
  });
}

void AccessibleQueries::askProperties(NodeIndex node) {
  store_[node].facts.properties.begin();
  if (store_[node].reference.bus != answersAll_) return askOneByOne(node);
  bus_.send(callGetAll(node), [this, node](sd_bus_message* reply) {
    store_[node].facts.properties.tell(readAllProperties(reply));
  });
}

void AccessibleQueries::askOneByOne(NodeIndex node) {
  auto gathered = std::make_shared<Gathered<AccessibleProperties>>();
  const auto ask = [&](const char* name, auto take) {
    BusMessagePtr question = call(node, properties, "Get");
    if (question) sd_bus_message_append(question.get(), "ss", accessible, name);
    ++gathered->open;
    bus_.send(std::move(question), [this, node, gathered, take](sd_bus_message* reply) {
      take(gathered->value, reply);
      if (--gathered->open == 0) store_[node].facts.properties.tell(std::move(gathered->value));
    });
  };
  using Found = AccessibleProperties;
  ask("Name", [](Found& found, sd_bus_message* reply) { found.name = readTextProperty(reply); });
  ask("Description",
      [](Found& found, sd_bus_message* reply) { found.description = readTextProperty(reply); });
  ask("AccessibleId",
      [](Found& found, sd_bus_message* reply) { found.identifier = readTextProperty(reply); });
  ask("ChildCount",
      [](Found& found, sd_bus_message* reply) { found.childCount = readCountProperty(reply); });
}

void AccessibleQueries::askChildren(NodeIndex node) {
  AccessibleFacts& facts = store_[node].facts;
  facts.children.begin();
  facts.isListPartial = false;
  const auto& known = facts.properties.value;
  const std::optional<std::int32_t> count = known ? known->childCount : std::nullopt;
  if (count && *count == 0) {
    facts.children.tell(std::vector<NodeIndex>());
  } else if (count && *count > static_cast<std::int32_t>(mostChildren_)) {
    askListByIndex(node);
  } else {
    askWholeList(node);
  }
}

void AccessibleQueries::askWholeList(NodeIndex node) {
  bus_.send(call(node, accessible, "GetChildren"), [this, node](sd_bus_message* reply) {
    auto references = readReferences(reply, mostChildren_);
    if (!references) return store_[node].facts.children.tell(std::nullopt);
    std::vector<NodeIndex> list;
    for (auto& reference : *references) list.push_back(store_.intern(std::move(reference), node));
    store_[node].facts.children.tell(std::move(list));
  });
}

void AccessibleQueries::askListByIndex(NodeIndex node) {
  using List = std::vector<std::optional<AccessibleReference>>;
  auto gathered = std::make_shared<Gathered<List>>();
  gathered->value.resize(mostChildren_);
  gathered->open = mostChildren_;
  for (std::size_t i = 0; i < mostChildren_; ++i) {
    BusMessagePtr question = call(node, accessible, "GetChildAtIndex");
    if (question) sd_bus_message_append(question.get(), "i", static_cast<std::int32_t>(i));
    bus_.send(std::move(question), [this, node, gathered, i](sd_bus_message* reply) {
      gathered->value[i] = readReference(reply);
      if (--gathered->open > 0) return;
      std::vector<NodeIndex> list;
      for (auto& child : gathered->value) {
        if (child) list.push_back(store_.intern(std::move(*child), node));
      }
      store_[node].facts.isListPartial = list.size() < gathered->value.size();
      store_[node].facts.children.tell(std::move(list));
    });
  }
}

void AccessibleQueries::askStates(NodeIndex node) {
  store_[node].moment.states.begin();
  bus_.send(call(node, accessible, "GetState"), [this, node](sd_bus_message* reply) {
    store_[node].moment.states.tell(readStates(reply));
  });
}

void AccessibleQueries::askExtents(NodeIndex node) {
  store_[node].moment.extents.begin();
  BusMessagePtr question = call(node, component, "GetExtents");
  if (question) sd_bus_message_append(question.get(), "u", screenCoordinates);
  bus_.send(std::move(question), [this, node](sd_bus_message* reply) {
    store_[node].moment.extents.tell(readExtents(reply));
  });
}

void AccessibleQueries::compareRole(NodeIndex node, Comparison told) {
  bus_.send(call(node, accessible, "GetRole"),
            [this, node, told = std::move(told)](sd_bus_message* reply) {
              const auto role = readNumber(reply);
              if (!role) return;
              told(role == store_[node].facts.role.value ? Difference::none : Difference::itself);
            });
}

void AccessibleQueries::compareProperties(NodeIndex node, Comparison told) {
  if (store_[node].reference.bus != answersAll_) return;
  bus_.send(callGetAll(node), [this, node, told = std::move(told)](sd_bus_message* reply) {
    const auto found = readAllProperties(reply);
    const auto& known = store_[node].facts.properties.value;
    if (!found) return;
    if (!known || found->childCount != known->childCount) return told(Difference::children);
    told(*found == *known ? Difference::none : Difference::itself);
  });
}

void AccessibleQueries::compareChildren(NodeIndex node, Comparison told) {
  const AccessibleFacts& facts = store_[node].facts;
  const auto count = facts.properties.value ? facts.properties.value->childCount : std::nullopt;
  if (count && *count == 0) return told(Difference::none);  // the properties have the count
  if (count && *count > static_cast<std::int32_t>(mostChildren_)) return;
  bus_.send(call(node, accessible, "GetChildren"),
            [this, node, told = std::move(told)](sd_bus_message* reply) {
              const auto found = readReferences(reply, mostChildren_);
              if (!found) return;
              const auto& known = store_[node].facts.children.value;
              const auto reference = [this](NodeIndex child) -> const AccessibleReference& {
                return store_[child].reference;
              };
              const bool isSame = known && std::ranges::equal(*found, *known, {}, {}, reference);
              told(isSame ? Difference::none : Difference::children);
            });
}

BusMessagePtr AccessibleQueries::callGetAll(NodeIndex node) {
  BusMessagePtr question = call(node, properties, "GetAll");
  if (question) sd_bus_message_append(question.get(), "s", accessible);
  return question;
}

BusMessagePtr AccessibleQueries::call(NodeIndex node, const char* interface, const char* member) {
  const AccessibleReference& reference = store_[node].reference;
  return bus_.newCall(reference.bus, reference.path, interface, member);
}

}  // namespace vellora
