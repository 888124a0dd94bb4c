#include "platform/linux/accessibility/described_memory.h"

#include <algorithm>
#include <vector>

namespace vellora {

namespace {

// Rows out of sight whose texts are asked again at a time.
constexpr std::size_t textsAgain = 32;

bool isInSight(const DescribedMemory& memory, std::size_t row) {
  const auto& extents = memory.frames.at(row);
  return extents && extents->y < memory.sight.bottom() && extents->bottom() > memory.sight.y;
}

// An element with all that is known to be below it.
void forgetTree(ElementFacts& facts, ElementIndex top) {
  std::vector<bool> isMet(facts.size(), false);
  ElementList ahead{top};
  while (!ahead.empty()) {
    const ElementIndex element = ahead.back();
    ahead.pop_back();
    if (isMet[element]) continue;
    isMet[element] = true;
    const ElementList below = facts[element].children.value.value_or(ElementList());
    ahead.insert(ahead.end(), below.begin(), below.end());
    facts.forget(element);
  }
}

void forgetLists(ElementFacts& facts) {
  for (ElementIndex element = 0; element < facts.size(); ++element) {
    facts[element].children = {};
    facts[element].matches.clear();
    facts[element].states = {};
    facts[element].address = {};
  }
}

}  // namespace

void forgetText(DescribedMemory& memory, ElementIndex element) {
  memory.settled.reset();
  ElementFact& fact = (*memory.facts)[element];
  fact.wantedText = fact.text.isTold() || (fact.wantedText && fact.name.isUnasked());
  fact.name = {};
  fact.text = {};
  fact.characterCount = {};
  fact.children = {};
}

void forgetEverything(DescribedMemory& memory) {
  memory.settled.reset();
  memory.facts->forgetAll();
  memory.frames.forget();
  memory.isSearching = false;
}

void forgetView(DescribedMemory& memory) {
  memory.settled.reset();
  ElementFacts& facts = *memory.facts;
  if (memory.last.frame) facts.forget(*memory.last.frame);
  if (memory.last.view) {
    forgetTree(facts, memory.last.view->view);
    for (const ElementIndex element : memory.last.view->titleElements) forgetTree(facts, element);
  }
  forgetLists(facts);
  memory.frames.forget();
}

void forgetPages(DescribedMemory& memory) {
  if (!memory.last.frame) return;
  memory.settled.reset();
  ElementFacts& facts = *memory.facts;
  auto& lists = facts[*memory.last.frame].matches;
  // Without collections the pages were found by a walk through all that is in them.
  const bool isWalked =
      std::ranges::any_of(lists, [](const auto& list) { return !list.second.value; });
  if (memory.last.documents.empty() || isWalked) forgetLists(facts);
  for (const ElementIndex document : memory.last.documents) facts[document].states = {};
  lists.clear();
  facts[*memory.last.frame].attributes = {};
}

void forgetRows(DescribedMemory& memory) {
  if (!memory.last.view) return;
  memory.settled.reset();
  for (const ElementIndex element : memory.last.view->lookedThrough) {
    (*memory.facts)[element].children = {};
  }
}

void forgetChanging(DescribedMemory& memory) {
  memory.settled.reset();
  ElementFacts& facts = *memory.facts;
  if (!memory.last.view) return forgetLists(facts);
  const FoundView& view = *memory.last.view;
  facts[memory.root].children = {};
  if (view.document) facts[*view.document].address = {};
  facts[view.view].name = {};
  facts[view.view].attributes = {};
  forgetRows(memory);
  for (const ElementIndex element : view.titleElements) forgetText(memory, element);
  for (const ElementIndex element : view.silent) forgetText(memory, element);
  const std::size_t rows = view.rows.size();
  for (std::size_t i = 0; i < rows; ++i) {
    if (rows <= textsAgain || isInSight(memory, i)) forgetText(memory, view.rows[i].textElement);
  }
  for (std::size_t i = 0; rows > textsAgain && i < textsAgain; ++i) {
    forgetText(memory, view.rows[memory.nextText++ % rows].textElement);
  }
}

void askChanging(DescribedMemory& memory) {
  if (!memory.last.view) return;
  ElementFacts& facts = *memory.facts;
  const FoundView& view = *memory.last.view;
  const auto askText = [&facts](ElementIndex element) {
    if (!facts[element].name.isUnasked()) return;
    facts.name(element);
    if (facts[element].wantedText) facts.text(element);
  };
  facts.children(memory.root);
  if (view.document) facts.address(*view.document);
  if (!facts[view.view].role.isUnasked()) {  // not everything was forgotten
    if (facts[view.view].name.isUnasked()) facts.name(view.view);
    if (facts[view.view].attributes.isUnasked()) facts.attributes(view.view);
    for (const ElementIndex element : view.lookedThrough) facts.children(element);
    for (const FoundRow& row : view.rows) askText(row.textElement);
    for (const ElementIndex element : view.silent) askText(element);
  }
  for (const ElementIndex element : view.titleElements) askText(element);
}

}  // namespace vellora
