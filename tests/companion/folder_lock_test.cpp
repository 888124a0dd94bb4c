#include "companion/exchange/folder_lock.h"

#include <array>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

using CompanionFolderLock = SongFolder;
using State = FolderLock::State;

TEST_F(CompanionFolderLock, OneFeedsAFolderAndTheNextIsToldWho) {
  {
    const FolderLock first(folder);
    EXPECT_EQ(first.state(), State::held);
    const FolderLock second(folder);
    EXPECT_EQ(second.state(), State::anothers);
    EXPECT_EQ(second.reason(), "process " + std::to_string(getpid()));
  }
  EXPECT_EQ(FolderLock(folder).state(), State::held) << "once it is free";
}

TEST_F(CompanionFolderLock, AProcessThatWasKilledHoldsNothing) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(::pipe(pipe.data()), 0);
  const pid_t child = fork();
  if (child == 0) {
    const FolderLock lock(folder);
    const char held = lock.state() == State::held ? 'y' : 'n';
    if (write(pipe[1], &held, 1) == 1) pause();
    _exit(0);
  }
  char held = '?';
  ASSERT_EQ(read(pipe[0], &held, 1), 1);
  EXPECT_EQ(held, 'y');
  EXPECT_EQ(FolderLock(folder).reason(), "process " + std::to_string(child));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(FolderLock(folder).state(), State::held);
  for (const int end : pipe) close(end);
}

TEST_F(CompanionFolderLock, WhereThereIsNoneItSaysWhy) {
  std::filesystem::create_directory(folder / "companion.lock");
  const FolderLock lock(folder);
  EXPECT_EQ(lock.state(), State::unavailable);
  EXPECT_NE(lock.reason().find("companion.lock: Is a directory"), std::string::npos)
      << lock.reason();
}

TEST_F(CompanionFolderLock, WhatHasBeenPutInItsPlaceIsNotFollowedAndNotWaitedFor) {
  put("other", "text");
  std::filesystem::create_symlink(folder / "other", folder / "companion.lock");
  EXPECT_EQ(FolderLock(folder).state(), State::unavailable);
  EXPECT_EQ(textOf("other"), "text");
}

}  // namespace
}  // namespace vellora::companion
