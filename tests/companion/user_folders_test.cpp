#include "companion/settings/user_folders.h"

#include <map>
#include <string>

#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

class UserFolders : public SongFolder {
 protected:
  void SetUp() override {
    SongFolder::SetUp();
    for (const char* name : {"Music", "Musik", "odd \"name"}) {
      std::filesystem::create_directory(folder / name);
    }
  }
  // The folder of music with that file of the user's folders, relative to the home.
  std::string music(const std::string& text) const {
    put(".config/user-dirs.dirs", text);
    const auto found = musicFolder([this](const char* name) -> std::optional<std::string> {
      return std::string_view(name) == "HOME" ? std::optional(folder.string()) : std::nullopt;
    });
    return found ? withoutFolder(found->string()) : "(none)";
  }
};

TEST_F(UserFolders, TheFolderOfMusicIsTheOneThatTheUserHas) {
  EXPECT_EQ(music(""), "Music");
  EXPECT_EQ(music("XDG_MUSIC_DIR=\"$HOME/Musik\"\n"), "Musik");
  EXPECT_EQ(music("# XDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_DESKTOP_DIR=\"$HOME/Musik\"\n"), "Music");
  EXPECT_EQ(music("XDG_MUSIC_DIR=\"" + (folder / "Musik").string() + "\"\n"), "Musik");
  EXPECT_EQ(music("XDG_MUSIC_DIR=\"$HOME/odd \\\"name\"\n"), "odd \"name");
  EXPECT_EQ(music("XDG_MUSIC_DIR=\"$HOME/Music\"\n  XDG_MUSIC_DIR=\"$HOME/Musik\"\n"), "Musik");
  EXPECT_EQ(music("XDG_MUSIC_DIR=\"Musik\"\n"), "Music") << "as little as a shell would find it";
}

TEST_F(UserFolders, OneThatIsNotThereIsNone) {
  EXPECT_EQ(music("XDG_MUSIC_DIR=\"$HOME/gone\"\n"), "(none)");
  EXPECT_EQ(music("XDG_MUSIC_DIR=\"$HOME/\"\n"), "(none)") << "the user wants none";
  EXPECT_EQ(musicFolder([](const char*) { return std::nullopt; }), std::nullopt);
}

class NamedFolders : public SongFolder {
 protected:
  std::map<std::string, std::string> variables;
  const Environment environment = [this](const char* name) {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  };
};

TEST_F(NamedFolders, ForWhatLastsAreWhereTheUserHasThem) {
  EXPECT_EQ(stateFolder(environment), std::nullopt);
  variables["HOME"] = "/h";
  EXPECT_EQ(stateFolder(environment), "/h/.local/state");
  variables["XDG_STATE_HOME"] = "s";
  EXPECT_EQ(stateFolder(environment), "/h/.local/state") << "no whole path";
  variables["XDG_STATE_HOME"] = "/s";
  EXPECT_EQ(stateFolder(environment), "/s");
}

TEST_F(NamedFolders, ForCachesAreWhereTheUserOrTheSystemHasThem) {
  EXPECT_EQ(cacheFolder(environment), std::nullopt);
  variables["HOME"] = folder.string();
  EXPECT_EQ(cacheFolder(environment), folder / ".cache");
  std::filesystem::create_directories(folder / "Library/Caches");
  EXPECT_EQ(cacheFolder(environment), folder / "Library/Caches");
  variables["XDG_CACHE_HOME"] = "relative";
  EXPECT_EQ(cacheFolder(environment), folder / "Library/Caches");
  variables["XDG_CACHE_HOME"] = "/c";
  EXPECT_EQ(cacheFolder(environment), "/c");
}

}  // namespace
}  // namespace vellora::companion
