#include "platform/linux/players/process_family.h"

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/temporary_folder.h"

namespace vellora {
namespace {

// A process that sleeps until it is ended, and what it started before that.
class Sleeper {
 public:
  Sleeper() {
    int ends[2];
    if (::pipe(ends) != 0) std::abort();
    process_ = ::fork();
    if (process_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      const pid_t child = ::fork();
      if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::pause();
      }
      [[maybe_unused]] const auto written = ::write(ends[1], &child, sizeof child);
      ::pause();
    }
    if (::read(ends[0], &child_, sizeof child_) != sizeof child_) std::abort();
    ::close(ends[0]);
    ::close(ends[1]);
  }
  ~Sleeper() {
    ::kill(child_, SIGKILL);
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  Sleeper(const Sleeper&) = delete;
  Sleeper& operator=(const Sleeper&) = delete;

  pid_t process() const { return process_; }
  pid_t child() const { return child_; }

 private:
  pid_t process_ = 0;
  pid_t child_ = 0;
};

TEST(ProcessFamilyTest, AProcessBelongsWithItselfItsAncestorsAndItsDescendants) {
  const Sleeper one;
  EXPECT_TRUE(belongTogether(one.process(), one.process()));
  EXPECT_TRUE(belongTogether(one.process(), one.child()));
  EXPECT_TRUE(belongTogether(one.child(), one.process()));
  EXPECT_TRUE(belongTogether(one.child(), ::getpid())) << "two generations";
  EXPECT_EQ(containerOf(one.process()), "");
}

TEST(ProcessFamilyTest, ItDoesNotBelongWithItsSiblings) {
  const Sleeper one;
  const Sleeper other;
  EXPECT_FALSE(belongTogether(one.process(), other.process()));
  EXPECT_FALSE(belongTogether(one.child(), other.child()));
}

TEST(ProcessFamilyTest, TheFirstProcessOfAllIsNobodysFamily) {
  EXPECT_FALSE(belongTogether(1, ::getpid()));
  EXPECT_FALSE(belongTogether(::getpid(), 1));
}

TEST(ProcessFamilyTest, NumbersOfNoProcessBelongWithNothing) {
  for (const std::int32_t none : {0, -1, INT32_MIN, INT32_MAX}) {
    EXPECT_FALSE(belongTogether(none, ::getpid())) << none;
    EXPECT_FALSE(belongTogether(::getpid(), none)) << none;
  }
  EXPECT_FALSE(belongTogether(0, 0));
}

// A folder as the kernel's, in which anything can be written.
class ProcessFolderTest : public testing::Test {
 protected:
  void write(std::int32_t process, const std::string& file, const std::string& text) const {
    const auto path = proc() / std::to_string(process) / file;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
  }
  void makeChild(std::int32_t process, std::int32_t parent, const std::string& name) const {
    write(process, "stat",
          std::to_string(process) + " (" + name + ") S " + std::to_string(parent) + " 1 1 0 -1");
  }
  bool together(std::int32_t a, std::int32_t b) const {
    const bool result = belongTogether(a, b, proc());
    EXPECT_EQ(belongTogether(b, a, proc()), result);
    return result;
  }
  std::filesystem::path proc() const { return folder.path(); }

  TemporaryFolder folder;
};

TEST_F(ProcessFolderTest, NamesMayLookLikeAnything) {
  makeChild(10, 1, "top");
  makeChild(20, 10, ") S 99 (");
  makeChild(30, 20, "a b) R 1 (c");
  EXPECT_TRUE(together(10, 30));
  EXPECT_FALSE(together(99, 20));
}

TEST_F(ProcessFolderTest, WhatIsNotAsTheKernelWritesItHasNoParent) {
  for (const char* text : {"", "20", "20 (a", "20 (a) ", "20 (a) S", "20 (a) S ", "20 (a) S x",
                           "20 (a) S -10 1", "20 (a) S 99999999999 1", "20 (a) S 0 1"}) {
    write(20, "stat", text);
    EXPECT_FALSE(together(10, 20)) << text;
  }
}

TEST_F(ProcessFolderTest, AClimbThatGoesRoundEnds) {
  makeChild(10, 20, "a");
  makeChild(20, 10, "b");
  EXPECT_FALSE(together(10, 30));
}

TEST_F(ProcessFolderTest, AnotherProcessOfTheSameFlatpakInstanceBelongsToIt) {
  const std::string info = "[Application]\nname=org.example.Tunes\n\n[Instance]\ninstance-id=";
  write(10, "root/.flatpak-info", info + "123\n");
  write(20, "root/.flatpak-info", info + "123\n");
  write(30, "root/.flatpak-info", info + "124\n");
  EXPECT_TRUE(together(10, 20));
  EXPECT_FALSE(together(10, 30)) << "the same application, opened twice";
  EXPECT_EQ(containerOf(10, proc()), containerOf(20, proc()));
  EXPECT_NE(containerOf(10, proc()), "");
}

TEST_F(ProcessFolderTest, WithoutAnInstanceTheApplicationCounts) {
  write(10, "root/.flatpak-info", "[Application]\nname=org.example.Tunes\n");
  write(20, "root/.flatpak-info", "[Application]\nname=org.example.Tunes\n");
  write(30, "root/.flatpak-info", "[Application]\nname=org.example.Other\n");
  write(40, "root/.flatpak-info", "[Runtime]\nname=org.example.Tunes\n");
  write(50, "root/.flatpak-info", "[Runtime]\nname=org.example.Tunes\n");
  EXPECT_TRUE(together(10, 20));
  EXPECT_FALSE(together(10, 30));
  EXPECT_FALSE(together(10, 40));
  EXPECT_FALSE(together(40, 50)) << "neither names an application";
}

TEST_F(ProcessFolderTest, AMarkThatIsNoFileOrNoKeyFileIsNone) {
  for (const std::int32_t process : {10, 20}) {
    std::filesystem::create_directories(proc() / std::to_string(process) / "root");
    ASSERT_EQ(::mkfifo((proc() / std::to_string(process) / "root/.flatpak-info").c_str(), 0600), 0);
  }
  EXPECT_FALSE(together(10, 20));
  write(30, "root/.flatpak-info", "not a key file");
  write(40, "root/.flatpak-info", "not a key file");
  EXPECT_FALSE(together(30, 40));
}

TEST_F(ProcessFolderTest, ProcessesOfOneSnapBelongTogether) {
  write(10, "attr/current", "snap.tunes.main (enforce)\n");
  write(20, "attr/current", "snap.tunes.helper (complain)\n");
  write(30, "attr/current", "snap.tuneshop.main (enforce)\n");
  EXPECT_TRUE(together(10, 20));
  EXPECT_FALSE(together(10, 30));
  write(40, "cgroup", "0::/user.slice/app.slice/snap.tunes.main-5b1f.scope\n");
  write(40, "attr/current", "unconfined\n");
  write(50, "cgroup", "0::/user.slice/app.slice/snap.tuneshop.main-5b1f.scope\n");
  EXPECT_TRUE(together(10, 40));
  EXPECT_FALSE(together(10, 50));
  EXPECT_TRUE(together(30, 50));
}

TEST_F(ProcessFolderTest, OtherControlGroupsAreNoSnaps) {
  for (const std::int32_t process : {10, 20}) {
    write(process, "attr/current", "unconfined\n");
    write(process, "cgroup", "0::/user.slice/mysnap.tunes.main.scope\n");
  }
  EXPECT_FALSE(together(10, 20));
  for (const std::int32_t process : {30, 40}) {
    write(process, "cgroup", "0::/snap.scope\n1:x:/snap.tunes\n2:y:/snap..a\n");
  }
  EXPECT_FALSE(together(30, 40));
}

}  // namespace
}  // namespace vellora
