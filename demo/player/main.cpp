#include <cstdio>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <glib-unix.h>
#include <gtk/gtk.h>

#include "library/song.h"
#include "library/songs_of_program.h"
#include "platform/linux/glib/event_source.h"
#include "playback/playback.h"
#include "player/mpris_service.h"
#include "player/options.h"
#include "player/player_window.h"
#include "player/style.h"

namespace vellora::demo {
namespace {

constexpr const char* applicationId = "com.apple.Music";

int fail(const std::string& message) {
  std::fprintf(stderr, "vellora-demo-player: %s\n", message.c_str());
  return 2;
}

double monotonicSeconds() { return static_cast<double>(g_get_monotonic_time()) / 1e6; }

int run(const PlayerOptions& options) {
  auto loaded = loadSongs(options.library);
  if (const auto* error = std::get_if<SongError>(&loaded)) return fail(error->text());
  auto songs = std::get<std::vector<Song>>(std::move(loaded));
  const auto song = findSong(songs, options.song);
  if (!song) {
    return fail("no song \"" + options.song + "\" in " + options.library.string() +
                ", which has songs 1 to " + std::to_string(songs.size()));
  }

  if (options.position > songs[*song].length) {
    return fail("the song ends before the position asked for");
  }

  // The instance and the class that window managers know the window by.
  g_set_prgname(applicationId);
  if (!gtk_init_check(nullptr, nullptr)) return fail("no display");
  gdk_set_program_class(applicationId);
  g_set_application_name("Music");
  applyStyle();

  Playback playback(std::move(songs), monotonicSeconds);
  playback.setRate(options.speed);
  playback.goTo(*song);
  playback.setPosition(options.position);
  if (options.paused) playback.pause();

  PlayerWindow window(playback, options.geometry, options.lyrics);
  const MprisService mpris(playback, {[&window] { window.present(); }, [] { gtk_main_quit(); }});
  const auto interrupted = attachSource(g_unix_signal_source_new(SIGINT), gtk_main_quit);
  const auto terminated = attachSource(g_unix_signal_source_new(SIGTERM), gtk_main_quit);
  gtk_main();
  return 0;
}

}  // namespace
}  // namespace vellora::demo

int main(int argc, char** argv) {
  using namespace vellora::demo;
  const auto options =
      parsePlayerOptions(std::vector<std::string>(argv + 1, argv + argc), songsOfProgram());
  if (const auto* error = std::get_if<std::string>(&options)) {
    return fail(*error + "; --help tells what there is");
  }
  const auto& chosen = std::get<PlayerOptions>(options);
  if (chosen.help) {
    std::fputs(std::string(playerHelp()).c_str(), stdout);
    return 0;
  }
  return run(chosen);
}
