#include <random>

#include <gtest/gtest.h>

#include "platform/linux/accessibility/plain_page.h"
#include "platform/linux/accessibility/plain_reading.h"

namespace vellora {

namespace {

// Pages made at random that change at random: whatever is remembered and left out, a reading comes
// to what a plain walk of the same page does.
class DescribedProperty : public DescribedFixture, public testing::WithParamInterface<unsigned> {
 protected:
  int upTo(int most) { return std::uniform_int_distribution<>(0, most)(random); }
  bool isOnce(int in) { return upTo(in - 1) == 0; }

  void makeRandomPage(bool hasCollection) {
    makePage(0);
    program.hasCollection = hasCollection;
    PlayerDescription bare = labelled();
    bare.lyrics->view = {
        .roles = {FakeRole::section}, .names = {}, .classes = {"lyrics*"}, .ids = {}};
    bare.lyrics->row = {.roles = {}, .names = {}, .classes = {"line"}, .ids = {}};
    describe(bare);
    for (int i = upTo(6); i > 0; --i) grow(document, 3);
    const std::size_t around = isOnce(2) ? document : grow(document, 1);
    view = add(program, around,
               {.role = FakeRole::section,
                .extents = Extents{300, 100 + upTo(200), 400, 300 + upTo(400)}});
    object(view).classes = isOnce(8) ? "other" : "big lyrics-view";
    holder = isOnce(2) ? view : add(program, view, {.role = FakeRole::section});
    top = 100 + upTo(200);
    for (int i = 5 + upTo(25); i > 0; --i) addRow();
  }

  std::size_t grow(std::size_t parent, int depth) {
    const std::size_t made = add(program, parent, {.role = FakeRole::section});
    if (isOnce(2)) object(made).classes = "card line";
    if (isOnce(2)) object(made).name = "about";
    for (int i = depth > 0 ? upTo(3) : 0; i > 0; --i) grow(made, depth - 1);
    return made;
  }

  std::size_t addRow() {
    const int place = upTo(4);
    FakeAccessible made = pageRow(place == 0 ? "" : "words " + std::to_string(++words), top);
    made.role = isOnce(2) ? FakeRole::section : FakeRole::button;
    made.classes = isOnce(6) ? "gap" : "line";
    if (place == 1) std::swap(made.text.emplace(), made.name);
    if (isOnce(20)) made.extents.reset();
    top += 60 + upTo(80);
    const std::size_t row = add(program, holder, made);
    rows.push_back(row);
    if (place == 0) {
      for (int i = upTo(2); i > 0; --i) {
        const std::size_t word = add(program, row, {.role = FakeRole::section});
        object(word).text = "part " + std::to_string(++words);
        if (isOnce(3)) object(word).classes = "line";  // inside a row: no other row
      }
    }
    return row;
  }

  void putAll() {
    for (std::size_t i = 0; i < program.objects.size(); ++i) player->put(i, object(i));
  }

  // A change that the answers to what is asked in every reading contradict.
  void changeVisibly() {
    const int kind = upTo(3);
    if (kind == 0) {
      const auto distance = static_cast<std::int32_t>(upTo(800) - 400);
      top -= distance;
      for (const std::size_t row : rows) {
        if (object(row).extents) (*object(row).extents)[1] -= distance;
      }
    } else if (kind == 1) {
      addRow();
    } else if (kind == 2 && !object(holder).children.empty()) {
      const auto gone = static_cast<std::ptrdiff_t>(static_cast<std::size_t>(upTo(1000)) %
                                                    object(holder).children.size());
      std::erase(rows, object(holder).children[static_cast<std::size_t>(gone)]);
      object(holder).children.erase(object(holder).children.begin() + gone);
    } else {
      object(document).states ^= FakeState::showing;
    }
  }

  // Any other.
  void changeQuietly() {
    FakeAccessible& it = object(document + static_cast<std::size_t>(upTo(1000)) %
                                               (program.objects.size() - document));
    const int kind = upTo(3);
    if (kind == 0) it.name = isOnce(2) ? "" : "named " + std::to_string(++words);
    if (kind == 1) it.classes = isOnce(3) ? "lyrics" : isOnce(2) ? "line" : "";
    if (kind == 2) it.text = "text " + std::to_string(++words);
    if (kind == 3 && it.extents) (*it.extents)[1] += 7;
  }

  void compare(const char* what) {
    const PlainPage plain(program, *window.descriptions.front()->lyrics);
    EXPECT_EQ(dump(readPage()), dump(plain.read("Song \u2014 One, Two"))) << what;
  }

  std::mt19937 random{GetParam()};
  std::size_t holder = 0;
  std::int32_t top = 0;
  int words = 0;
};

TEST_P(DescribedProperty, WithoutMemoryReadingsAreThoseOfAPlainWalk) {
  remember(std::chrono::seconds(0));
  makeRandomPage(isOnce(2));
  begin();
  compare("at first");
  for (int i = 0; i < 6; ++i) {
    if (isOnce(2)) changeVisibly();
    changeQuietly();
    putAll();
    compare(("after change " + std::to_string(i)).c_str());
  }
}

TEST_P(DescribedProperty, WithMemoryWhatIsContradictedIsSeenAtOnce) {
  makeRandomPage(isOnce(2));
  begin();
  compare("at first");
  for (int i = 0; i < 8; ++i) {
    changeVisibly();
    putAll();
    compare(("after change " + std::to_string(i)).c_str());
  }
}

INSTANTIATE_TEST_SUITE_P(Pages, DescribedProperty, testing::Range(0U, 40U));

}  // namespace

}  // namespace vellora
