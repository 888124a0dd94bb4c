#pragma once

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <sys/time.h>

namespace vellora::companion {

// A folder of its own for each test, gone at its end.
class SongFolder : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = "/tmp/vellora-songs-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  void put(const std::string& name, std::string_view text) const {
    std::filesystem::create_directories((folder / name).parent_path());
    std::ofstream(folder / name, std::ios::binary) << text;
  }
  std::string textOf(const std::string& name) const {
    std::ifstream file(folder / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // All folders get that time of their last change, in seconds since 1970.
  void setTimes(std::time_t time) const {
    const timeval times[2] = {{time, 0}, {time, 0}};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (entry.is_directory()) utimes(entry.path().c_str(), times);
    }
    ASSERT_EQ(utimes(folder.c_str(), times), 0);
  }
  // `text` without the folder's name.
  std::string withoutFolder(std::string text) const {
    const std::string name = folder.string() + "/";
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name)) {
      text.erase(at, name.size());
    }
    return text;
  }

  std::filesystem::path folder;
};

}  // namespace vellora::companion
