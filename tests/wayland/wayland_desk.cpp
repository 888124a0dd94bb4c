#include "wayland/wayland_desk.h"

#include <utility>

namespace vellora::e2e {

std::unique_ptr<witness::Screen> WaylandDesk::openScreen() {
  auto opened = Compositor::open();
  compositor = opened.get();
  return opened;
}

std::optional<witness::SeenPlayer> WaylandDesk::seenPlayer() const {
  auto seen = Desk::seenPlayer();
  if (!seen || !player || isPlacedByScreen_) return seen;
  const auto content = compositor->contentOf(player->pid());
  if (!content) return std::nullopt;
  return witness::movedBy(std::move(*seen), {content->x, content->y});
}

void WaylandDesk::startPlayerAt(const Rect& frame, PlayersWindow window) {
  isPlacedByScreen_ = window == PlayersWindow::underXwayland;
  environment["GDK_BACKEND"] = isPlacedByScreen_ ? "x11" : "wayland";
  player = std::make_unique<Process>(
      std::vector<std::string>{VELLORA_DEMO_PLAYER, "--song", "1", "--paused", "--position", "12"},
      folder / "player.log", environment);
  ASSERT_TRUE(waitFor([&] { return Desk::seenPlayer() && !Desk::seenPlayer()->rows.empty(); }))
      << "the player's rows did not come onto the accessibility bus";
  ASSERT_TRUE(waitFor([&] { return compositor->contentOf(player->pid()).has_value(); }))
      << "the compositor does not know the player's window";
  compositor->place(player->pid(), frame);
  compositor->activate(player->pid());
  ASSERT_TRUE(waitFor([&] { return compositor->contentOf(player->pid()) == frame; }))
      << "the player's window is not where it was put";
  if (overlay) {
    rememberPlayerAnew();
  } else {
    rememberPlayerAlone();
  }
}

void WaylandDesk::rememberPlayerAlone() {
  std::optional<witness::SeenPlayer> before;
  std::optional<witness::Picture> picture;
  ASSERT_TRUE(waitFor([&] {
    const auto seen = seenPlayer();
    const auto now = compositor->whole();
    const bool rests = seen && now && picture && seen == before && now->pixels == picture->pixels;
    before = seen;
    picture = now;
    return rests;
  })) << "the player's picture does not come to rest";
  compositor->rememberAlone();
}

void WaylandDesk::rememberPlayerAnew() {
  const auto shown = snapshot();
  ASSERT_TRUE(shown);
  OverlaySnapshot other = *shown;
  other.musicTitle = "A song that nobody plays";
  keepSnapshot(other);
  ASSERT_TRUE(waitFor([&] { return statusIs("Waiting for translations for this song"); }));
  ASSERT_NO_FATAL_FAILURE(rememberPlayerAlone());
  keepSnapshot(*shown);
  ASSERT_TRUE(waitFor([&] { return following(); }));
}

void WaylandDesk::follow(const Rect& frame, PlayersWindow window) {
  ASSERT_NO_FATAL_FAILURE(startPlayerAt(frame, window));
  keepSnapshot(snapshotOfPlayer());
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
}

}  // namespace vellora::e2e
