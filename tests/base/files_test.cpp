#include "base/files.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/file_size_limit.h"
#include "support/ordinary_user.h"

namespace vellora {
namespace {

namespace fs = std::filesystem;

class FilesTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "vellora-files-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override { fs::remove_all(folder); }

  void put(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
  }
  std::string content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::set<std::string> names() {
    std::set<std::string> result;
    for (const auto& entry : fs::directory_iterator(folder)) result.insert(entry.path().filename());
    return result;
  }

  fs::path folder;
};

TEST_F(FilesTest, WholeContentIsReadBytesAndAll) {
  const std::string bytes("a\0\r\n\xFF", 5);
  put(folder / "a", bytes);
  EXPECT_EQ(readWholeFile(folder / "a"), bytes);
  put(folder / "empty", "");
  EXPECT_EQ(readWholeFile(folder / "empty"), "");
  const std::string large(1'000'003, 'x');
  put(folder / "large", large);
  EXPECT_EQ(readWholeFile(folder / "large"), large);
}

TEST_F(FilesTest, EverySizeAroundThatOfOneReadIsReadToTheEnd) {
  for (const std::size_t piece : {4096U, 16384U, 32768U, 65536U}) {
    for (const std::size_t size : {piece - 1, piece, piece + 1}) {
      const std::string bytes(size, 'x');
      put(folder / "a", bytes);
      EXPECT_EQ(readWholeFile(folder / "a"), bytes) << size;
    }
  }
}

TEST_F(FilesTest, SymbolicLinkIsFollowedForReading) {
  put(folder / "a", "x");
  fs::create_symlink("a", folder / "link");
  fs::create_symlink("nowhere", folder / "dangling");
  EXPECT_EQ(readWholeFile(folder / "link"), "x");
  EXPECT_EQ(readWholeFile(folder / "dangling"), std::nullopt);
}

TEST_F(FilesTest, MissingFileAndFolderCannotBeRead) {
  EXPECT_EQ(readWholeFile(folder / "a"), std::nullopt);
  EXPECT_EQ(readWholeFile(folder), std::nullopt);
  EXPECT_EQ(readWholeFile(folder / "a" / "b"), std::nullopt);
  EXPECT_EQ(readWholeFile(""), std::nullopt);
  EXPECT_EQ(readWholeFile(folder / std::string(300, 'n')), std::nullopt);
}

TEST_F(FilesTest, FifoIsNeitherWaitedForNorRead) {
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0666), 0);
  EXPECT_EQ(readWholeFile(folder / "fifo"), std::nullopt);
}

TEST_F(FilesTest, DevicesAreNotRead) {
  EXPECT_EQ(readWholeFile("/dev/null"), std::nullopt);
  EXPECT_EQ(readWholeFile("/dev/zero"), std::nullopt);
  fs::create_symlink("/dev/zero", folder / "link");
  EXPECT_EQ(readWholeFile(folder / "link"), std::nullopt);
}

TEST_F(FilesTest, ReadingAgainTellsWhetherTheContentIsTheKnownOneAndElseAllOfIt) {
  const std::size_t piece = 16384;
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, piece - 1, piece, 3 * piece + 5}) {
    const std::string bytes(size, 'x');
    put(folder / "a", bytes);
    std::string other = "earlier";
    EXPECT_EQ(readWholeFileAgain(folder / "a", bytes, other), FileReading::asBefore) << size;
    EXPECT_EQ(other, "");
    const auto isOther = [&](const std::string& known) {
      return readWholeFileAgain(folder / "a", known, other) == FileReading::other && other == bytes;
    };
    EXPECT_TRUE(isOther(bytes + "x")) << size;
    EXPECT_TRUE(isOther(bytes + std::string(2 * piece, 'x'))) << size;
    if (size == 0) continue;
    EXPECT_TRUE(isOther("")) << size;
    EXPECT_TRUE(isOther(bytes.substr(1))) << size;
    for (const std::size_t at : {std::size_t{0}, size / 2, size - 1}) {
      std::string known = bytes;
      known[at] = 'y';
      EXPECT_TRUE(isOther(known)) << size << " " << at;
    }
  }
  std::string other;
  EXPECT_EQ(readWholeFileAgain(folder / "missing", "", other), FileReading::failed);
  EXPECT_EQ(readWholeFileAgain(folder, "", other), FileReading::failed);
}

TEST_F(FilesTest, FileOfSixteenMebibytesIsReadAndOneByteMoreIsNot) {
  put(folder / "a", "");
  fs::resize_file(folder / "a", largestReadableFile);
  const std::optional<std::string> bytes = readWholeFile(folder / "a");
  ASSERT_TRUE(bytes);
  EXPECT_EQ(bytes->size(), largestReadableFile);
  fs::resize_file(folder / "a", largestReadableFile + 1);
  EXPECT_EQ(readWholeFile(folder / "a"), std::nullopt);
}

TEST_F(FilesTest, FileThatOnlySeemsEnormousIsRefusedBeforeRoomIsMadeForIt) {
  put(folder / "sparse", "");
  fs::resize_file(folder / "sparse", std::uintmax_t{1} << 42);
  EXPECT_EQ(readWholeFile(folder / "sparse"), std::nullopt);
}

TEST_F(FilesTest, PathWithNulReachesNoOtherFile) {
  put(folder / "a", "x");
  const fs::path path(folder.native() + std::string("/a\0b", 4));
  EXPECT_EQ(readWholeFile(path), std::nullopt);
  EXPECT_FALSE(fileExists(path));
  EXPECT_FALSE(writeFileAtomically(path, "y"));
  EXPECT_FALSE(removeFile(path));
  EXPECT_EQ(content(folder / "a"), "x");
}

TEST_F(FilesTest, WritingReplacesTheFileAndLeavesNothingElse) {
  EXPECT_TRUE(writeFileAtomically(folder / "a", "one"));
  EXPECT_EQ(content(folder / "a"), "one");
  const std::string large(3'000'000, 'y');
  EXPECT_TRUE(writeFileAtomically(folder / "a", large));
  EXPECT_EQ(content(folder / "a"), large);
  EXPECT_TRUE(writeFileAtomically(folder / "a", ""));
  EXPECT_EQ(content(folder / "a"), "");
  EXPECT_EQ(names(), std::set<std::string>{"a"});
}

TEST_F(FilesTest, ReplacedFileIsAnotherFileSoThatAReaderKeepsTheOldOne) {
  put(folder / "a", "old");
  std::ifstream reader(folder / "a");
  ASSERT_TRUE(writeFileAtomically(folder / "a", "new"));
  std::string seen;
  reader >> seen;
  EXPECT_EQ(seen, "old");
}

TEST_F(FilesTest, WrittenFileHasThePermissionsOfAnOrdinaryOne) {
  const mode_t mask = ::umask(027);
  EXPECT_TRUE(writeFileAtomically(folder / "a", "x"));
  ::umask(mask);
  struct stat status {};
  ASSERT_EQ(::stat((folder / "a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST_F(FilesTest, SymbolicLinkInTheDestinationIsReplacedAndItsTargetStays) {
  put(folder / "target", "old");
  fs::create_symlink("target", folder / "link");
  EXPECT_TRUE(writeFileAtomically(folder / "link", "new"));
  EXPECT_FALSE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(content(folder / "link"), "new");
  EXPECT_EQ(content(folder / "target"), "old");
}

TEST_F(FilesTest, FifoInTheDestinationIsReplaced) {
  ASSERT_EQ(::mkfifo((folder / "a").c_str(), 0666), 0);
  EXPECT_TRUE(writeFileAtomically(folder / "a", "new"));
  EXPECT_TRUE(fs::is_regular_file(folder / "a"));
}

TEST_F(FilesTest, WritingWhereTheFolderDoesNotExistLeavesNoFileAndNoFolder) {
  EXPECT_FALSE(writeFileAtomically(folder / "missing" / "a", "x"));
  EXPECT_FALSE(fs::exists(folder / "missing"));
}

TEST_F(FilesTest, FolderWithoutPermissionFailsAndTheOldFileStays) {
  put(folder / "a", "old");
  put(folder / "secret", "s");
  ::chmod((folder / "secret").c_str(), 0);
  ::chmod(folder.c_str(), 0555);
  {
    const OrdinaryUser user;
    ASSERT_TRUE(user.worked());
    EXPECT_FALSE(writeFileAtomically(folder / "a", "new"));
    EXPECT_FALSE(removeFile(folder / "a"));
    EXPECT_EQ(readWholeFile(folder / "a"), "old");
    EXPECT_EQ(readWholeFile(folder / "secret"), std::nullopt);
  }
  ::chmod(folder.c_str(), 0755);
  EXPECT_EQ(names(), (std::set<std::string>{"a", "secret"}));
}

TEST_F(FilesTest, WritingOverAFolderFailsAndLeavesNoTemporaryFile) {
  fs::create_directory(folder / "a");
  EXPECT_FALSE(writeFileAtomically(folder / "a", "x"));
  EXPECT_TRUE(fs::is_directory(folder / "a"));
  EXPECT_EQ(names(), std::set<std::string>{"a"});
}

TEST_F(FilesTest, NameThatIsTooLongFailsAndLeavesNoTemporaryFile) {
  EXPECT_FALSE(writeFileAtomically(folder / std::string(256, 'n'), "x"));
  EXPECT_EQ(names(), std::set<std::string>{});
  EXPECT_TRUE(writeFileAtomically(folder / std::string(255, 'n'), "x"));
}

TEST_F(FilesTest, PathWithoutAFileNameFails) {
  EXPECT_FALSE(writeFileAtomically("", "x"));
  EXPECT_FALSE(writeFileAtomically(folder / "", "x"));
  EXPECT_EQ(names(), std::set<std::string>{});
}

TEST_F(FilesTest, WriteThatFailsMidwayKeepsTheOldFileAndLeavesNoTemporaryFile) {
  put(folder / "a", "old");
  {
    const FileSizeLimit limit(4096);
    EXPECT_FALSE(writeFileAtomically(folder / "a", std::string(100'000, 'x')));
    EXPECT_TRUE(writeFileAtomically(folder / "b", "small"));
  }
  EXPECT_EQ(content(folder / "a"), "old");
  EXPECT_EQ(names(), (std::set<std::string>{"a", "b"}));
}

TEST_F(FilesTest, NameThatACrashedProcessLeftBehindIsPassedOver) {
  const std::string stale = ".vellora-" + std::to_string(::getpid()) + "-0";
  put(folder / stale, "left");
  EXPECT_TRUE(writeFileAtomically(folder / "a", "x"));
  EXPECT_EQ(content(folder / "a"), "x");
  EXPECT_EQ(content(folder / stale), "left");
}

TEST_F(FilesTest, WhatEndedProcessesLeftIsRemovedAndNothingElse) {
  const pid_t gone = ::fork();
  if (gone == 0) ::_exit(0);
  ASSERT_EQ(::waitpid(gone, nullptr, 0), gone);
  const std::string left = ".vellora-" + std::to_string(gone) + "-0";
  const std::string fresh = ".vellora-" + std::to_string(gone) + "-1";
  const std::string ofTheLiving = ".vellora-" + std::to_string(::getpid()) + "-0";
  const std::set<std::string> others{"a",
                                     ".vellora-",
                                     ".vellora-x-0",
                                     ".vellora-0-0",
                                     ".vellora--1-0",
                                     left + "x",
                                     left + "-0",
                                     ".vellora-" + std::to_string(gone)};
  std::set<std::string> all = others;
  all.insert({left, fresh, ofTheLiving});
  const auto old = fs::file_time_type::clock::now() - std::chrono::minutes(2);
  for (const std::string& name : all) {
    put(folder / name, "x");
    if (name != fresh) fs::last_write_time(folder / name, old);
  }
  removeAbandonedFiles(folder);
  all.erase(left);
  EXPECT_EQ(names(), all);
  removeAbandonedFiles(folder / "missing");
  removeAbandonedFiles(folder / "a");
  removeAbandonedFiles("");
  EXPECT_EQ(names(), all);
}

TEST_F(FilesTest, ReaderBesideAWriterSeesOnlyWholeFiles) {
  const std::string first(200'000, 'a');
  const std::string second(150'000, 'b');
  ASSERT_TRUE(writeFileAtomically(folder / "a", first));
  std::thread writer([&] {
    for (int i = 0; i < 100; ++i) {
      EXPECT_TRUE(writeFileAtomically(folder / "a", i % 2 == 0 ? second : first));
    }
  });
  for (int i = 0; i < 300; ++i) {
    const std::optional<std::string> bytes = readWholeFile(folder / "a");
    EXPECT_TRUE(bytes && (*bytes == first || *bytes == second));
  }
  writer.join();
}

TEST_F(FilesTest, PrivateFolderIsForTheUserAloneAndThoseAboveItAreOrdinary) {
  const mode_t mask = ::umask(022);
  for (const fs::path& path :
       {folder / "a" / "b" / "private", folder / "a" / "c" / "private" / ""}) {
    EXPECT_FALSE(makePrivateFolder(path));
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700U) << path;
  }
  ::umask(mask);
  struct stat above {};
  ASSERT_EQ(::stat((folder / "a" / "b").c_str(), &above), 0);
  EXPECT_EQ(above.st_mode & 07777, 0755U);
}

TEST_F(FilesTest, FolderThatIsThereStaysAsItIsAndNothingElseIsTakenForOne) {
  fs::create_directory(folder / "d");
  fs::create_symlink("d", folder / "link");
  ::chmod((folder / "d").c_str(), 0750);
  EXPECT_FALSE(makePrivateFolder(folder / "d"));
  EXPECT_FALSE(makePrivateFolder(folder / "link"));
  struct stat status {};
  ASSERT_EQ(::stat((folder / "d").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0750U);
  put(folder / "a", "x");
  EXPECT_EQ(makePrivateFolder(folder / "a"), std::errc::file_exists);
  EXPECT_EQ(makePrivateFolder(folder / "a" / "b"), std::errc::not_a_directory);
  EXPECT_TRUE(makePrivateFolder(""));
  EXPECT_TRUE(makePrivateFolder(folder.native() + std::string("/a\0b", 4)));
  EXPECT_EQ(names(), (std::set<std::string>{"a", "d", "link"}));
}

TEST_F(FilesTest, ExistenceFollowsLinks) {
  put(folder / "a", "");
  fs::create_symlink("a", folder / "link");
  fs::create_symlink("nowhere", folder / "dangling");
  EXPECT_TRUE(fileExists(folder / "a"));
  EXPECT_TRUE(fileExists(folder));
  EXPECT_TRUE(fileExists(folder / "link"));
  EXPECT_FALSE(fileExists(folder / "dangling"));
  EXPECT_FALSE(fileExists(folder / "b"));
}

TEST_F(FilesTest, RemovingTellsWhetherTheFileIsGoneByThisCall) {
  put(folder / "a", "");
  fs::create_directory(folder / "d");
  EXPECT_TRUE(removeFile(folder / "a"));
  EXPECT_FALSE(removeFile(folder / "a"));
  EXPECT_FALSE(removeFile(folder / "d"));
  EXPECT_EQ(names(), std::set<std::string>{"d"});
}

}  // namespace
}  // namespace vellora
