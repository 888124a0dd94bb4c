// What is remembered of a program of GTK 3, beside plain readings of the same window that remember
// nothing, while the window changes in every way that the toolkit knows.
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "music/lyrics_layout_reader.h"
#include "platform/linux/accessibility/linux_accessibility.h"
#include "platform/linux/accessibility/plain_element.h"
#include "platform/linux/accessibility/plain_reading.h"

namespace vellora {
namespace {

using Steady = std::chrono::steady_clock;

constexpr auto longestMemory = std::chrono::seconds(1);  // unless said otherwise
constexpr auto patience = std::chrono::seconds(15);

// The program with the window, which does what it is told.
class ChangingProgram {
 public:
  ChangingProgram() {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) return;
    pid_ = fork();
    if (pid_ == 0) {
      dup2(input[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      execl(VELLORA_CHANGING_WINDOW, VELLORA_CHANGING_WINDOW, nullptr);
      _exit(127);
    }
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_.reset(fdopen(output[0], "r"));
  }
  ~ChangingProgram() {
    if (pid_ <= 0) return;
    close(input_);
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }
  ChangingProgram(const ChangingProgram&) = delete;
  ChangingProgram& operator=(const ChangingProgram&) = delete;

  pid_t pid() const { return pid_; }

  void tell(const std::string& line) const {
    const std::string whole = line + "\n";
    EXPECT_EQ(write(input_, whole.data(), whole.size()), static_cast<ssize_t>(whole.size()));
  }

  // The next line that it says, empty when it has ended.
  std::string answer() const {
    std::array<char, 256> bytes{};
    if (!output_ || std::fgets(bytes.data(), bytes.size(), output_.get()) == nullptr) return "";
    std::string line(bytes.data());
    if (!line.empty() && line.back() == '\n') line.pop_back();
    return line;
  }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  pid_t pid_ = -1;
  int input_ = -1;
  std::unique_ptr<std::FILE, Close> output_;
};

void dumpTree(AccessibilityElement& element, int depth, std::string& text) {
  text.append(static_cast<std::size_t>(depth), ' ');
  for (const auto name :
       {AccessibilityAttribute::role, AccessibilityAttribute::title,
        AccessibilityAttribute::description, AccessibilityAttribute::identifier}) {
    text += string(element, name) + "|";
  }
  text += "\n";
  const AttributeValue children = element.attribute(AccessibilityAttribute::children);
  const auto* list = std::get_if<AccessibilityElements>(&children);
  if (list == nullptr) return;
  for (const auto& child : *list) dumpTree(*child, depth + 1, text);
}

std::string firstDifference(const std::string& remembered, const std::string& there) {
  std::istringstream mine(remembered);
  std::istringstream theirs(there);
  std::string line;
  std::string other;
  while (std::getline(theirs, other) && std::getline(mine, line) && line == other) {
  }
  return "remembered \"" + line + "\" where \"" + other + "\" is\n";
}

class GtkChangesTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(std::getenv("VELLORA_SESSION_PIDS"), nullptr)
        << "run this through scripts/session, which gives it a desktop of its own";
    remembering->requestTrust();
    ASSERT_TRUE(eventually([&] { return remembering->isTrusted(); }));
    program = std::make_unique<ChangingProgram>();
    ASSERT_EQ(program->answer(), "ready");
    ASSERT_TRUE(eventually([&] {
      const auto found = PlainElement::program(program->pid());
      if (found) plainly = std::make_unique<PlainAccessibility>(found);
      return plainly && readMusic(program->pid(), *plainly, clock);
    }));
  }

  // All that a reading can see of the program.
  std::string read(Accessibility& accessibility) const {
    std::string text = dump(readMusic(program->pid(), accessibility, clock));
    const AttributeValue windows =
        accessibility.applicationElement(program->pid(), musicPlayer, ReadingLimits())
            ->attribute(AccessibilityAttribute::windows);
    if (const auto* list = std::get_if<AccessibilityElements>(&windows)) {
      for (const auto& window : *list) dumpTree(*window, 0, text);
    }
    return text;
  }

  std::string remembered() const { return read(*remembering); }
  std::string plain() const { return read(*plainly); }

  // Has the operation carried out; its number is `seed`.
  void change(const std::string& operation, unsigned seed) const {
    program->tell(operation + " " + std::to_string(seed));
    ASSERT_EQ(program->answer(), "done") << operation;
  }

  // Whether a reading with memory sees what is there. The window may still be on its way to where
  // it will be, and a busy machine may cut a reading short: only when a reading with an empty
  // memory sees more, and that several times, is it the memory that is wrong.
  bool agrees() {
    const auto deadline = Steady::now() + patience;
    for (int wrong = 0; wrong < 3 && Steady::now() < deadline;) {
      const std::string mine = remembered();
      there = plain();
      if (mine == there) return true;
      difference = firstDifference(mine, there);
      const auto empty = makeLinuxAccessibility();
      if (read(*empty) == there) ++wrong;
    }
    return false;
  }

  std::vector<std::string> operations(const std::string& kind) const {
    std::vector<std::string> names;
    program->tell("list");
    for (std::string line = program->answer(); !line.empty() && line != "end";
         line = program->answer()) {
      if (line.starts_with(kind + " ")) names.push_back(line.substr(kind.size() + 1));
    }
    return names;
  }

  template <class Condition>
  static bool eventually(Condition condition) {
    const auto deadline = Steady::now() + patience;
    while (!condition()) {
      if (Steady::now() > deadline) return false;
    }
    return true;
  }

  std::shared_ptr<Accessibility> remembering = makeLinuxAccessibility();
  StoppedClock clock;
  std::unique_ptr<ChangingProgram> program;
  std::unique_ptr<PlainAccessibility> plainly;
  std::string there;       // the last plain reading of `agrees`
  std::string difference;  // from it
};

TEST_F(GtkChangesTest, SignalledChangesAreSeenAtOnce) {
  remembering = makeLinuxAccessibility(std::chrono::hours(1));  // they are not seen by its age
  ASSERT_TRUE(agrees()) << difference;
  const auto signalled = operations("signalled");
  auto inOrder = operations("unseen");
  inOrder.insert(inOrder.end(), signalled.begin(), signalled.end());
  auto shuffled = inOrder;
  std::mt19937 random(3);
  std::shuffle(shuffled.begin(), shuffled.end(), random);
  std::set<std::string> hadEffect;
  for (const auto& order : {inOrder, shuffled}) {
    for (const std::string& operation : order) {
      const std::string before = there;
      ASSERT_NO_FATAL_FAILURE(change(operation, static_cast<unsigned>(random())));
      EXPECT_TRUE(agrees()) << "after " << operation << ":\n" << difference;
      if (there != before) hadEffect.insert(operation);
    }
  }
  EXPECT_GT(signalled.size(), 50U);
  for (const std::string& operation : signalled) {
    EXPECT_TRUE(hadEffect.contains(operation)) << operation << " changed nothing";
  }
}

TEST_F(GtkChangesTest, AMenuThatIsOpenLeavesTheLyricsInFront) {
  const auto rows = [this] {
    const auto layout = readMusic(program->pid(), *remembering, clock);
    return layout ? layout->rows.size() : 0;
  };
  const auto windows = [this] {
    const AttributeValue value =
        remembering->applicationElement(program->pid(), musicPlayer, ReadingLimits())
            ->attribute(AccessibilityAttribute::windows);
    const auto* list = std::get_if<AccessibilityElements>(&value);
    return list != nullptr ? list->size() : 0;
  };
  ASSERT_TRUE(eventually([&] { return rows() > 0; }));
  ASSERT_EQ(windows(), 1U);
  ASSERT_NO_FATAL_FAILURE(change("menu", 1));
  ASSERT_TRUE(eventually([&] { return windows() == 2; }));
  EXPECT_TRUE(eventually([&] { return rows() > 0; })) << "the menu is taken for the window";
  EXPECT_EQ(windows(), 2U);
}

TEST_F(GtkChangesTest, ChangesThatGtkDoesNotSignalAreSeenWithinASecond) {
  ASSERT_TRUE(agrees()) << difference;
  const auto unsignalled = operations("unsignalled");
  EXPECT_GT(unsignalled.size(), 15U);
  std::mt19937 random(1);
  for (const std::string& operation : unsignalled) {
    const std::string before = there;
    ASSERT_NO_FATAL_FAILURE(change(operation, static_cast<unsigned>(random())));
    there = plain();
    EXPECT_TRUE(there != before) << operation << " changed nothing";
    remembered();
  }
  const auto changed = Steady::now();
  while (remembered() != there && Steady::now() < changed + longestMemory) {
    poll(nullptr, 0, 100);
  }
  EXPECT_TRUE(agrees()) << difference;
}

}  // namespace
}  // namespace vellora
