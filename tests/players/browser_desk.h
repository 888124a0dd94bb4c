#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "e2e/desk.h"
#include "library/song.h"

namespace vellora::e2e {

// A browser as Debian has it, and how it is asked to open a page.
struct Browser {
  std::string name;         // for the test's name
  std::string program;      // looked for in PATH
  std::string windowClass;  // of its windows
  bool asApplication;       // Chromium's --app: a window without tabs and address
};

void PrintTo(const Browser& browser, std::ostream* out);

// A desktop with a browser in the player's place. The session must have been started with
// accessibility switched on and with a sound server: see scripts/session.
class BrowserDesk : public Desk {
 protected:
  explicit BrowserDesk(Browser browser) : browser_(std::move(browser)) {}
  void SetUp() override;
  void TearDown() override;

  // Starts the browser with a profile of its own and these pages, of demo/page or
  // tests/players/pages
  // ("labelled.html?song=1"), each in a tab; the first is shown. Until its window is in front.
  void open(const std::vector<std::string>& pages);
  // Opens the page on that song, paused at that second, starts the overlay with the song's
  // translations, and waits for captions under the rows.
  void follow(const std::string& page, std::size_t song = 1);
  // A description of a player for the overlay to find among the user's own.
  void describe(const std::string& file, const std::string& text) const;

  // The songs of the pages, from 1.
  const demo::Song& song(std::size_t number) const { return songs_.at(number - 1); }
  OverlaySnapshot snapshotOf(std::size_t number) const;
  // The browser's window, by the window system.
  void bringToFront() const;
  bool inFront() const;
  // What the witness sees, row by row, for a failure's message.
  std::string whatIsSeen() const;
  // No pixel of the browser's window differs from its own picture.
  bool nothingOverWindow() const;

  std::optional<witness::SeenPlayer> seenPlayer() const override;
  std::string windowClass() const override { return browser_.windowClass; }

  const Browser& browser() const { return browser_; }
  // How many units of a page element's frame, as the browser gives it, a point has.
  double unitsPerPoint = 1;

 private:
  std::vector<std::string> command() const;
  Browser browser_;
  std::filesystem::path pages_;
  std::filesystem::path profile_;
  std::vector<demo::Song> songs_;
};

}  // namespace vellora::e2e
