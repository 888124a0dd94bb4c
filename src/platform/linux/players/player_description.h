#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/players/element_pattern.h"

namespace vellora {

// Where the lyrics are among the elements of a player's window, and what is read of them.
struct LyricsPattern {
  ElementPattern container;  // the view has to lie inside such an element; empty: anywhere
  ElementPattern view;       // the element that holds the rows
  // The view itself or an element around it, whose frame is what can be seen of the lyrics; empty:
  // the view. What the page or the window leaves of it counts.
  ElementPattern viewport;
  ElementPattern row;       // below the view; what is inside a row is no other row
  ElementPattern rowText;   // below the row, the element that has its text; empty: the row
  ElementPattern rowFrame;  // below the row, the element that has its frame; empty: the row
  // A row's frame is the box of its text's characters instead, without the room around them.
  bool isFrameOfText = false;
  // The elements that name what plays; empty: the metadata of the process's MPRIS player do.
  ElementPattern title;
  ElementPattern artist;  // empty: the title's element names both, or only the title is known
};

// A player as its file describes it.
struct PlayerDescription {
  std::string identifier;  // the file's name without ".player"
  std::string file;        // where it was read
  std::string name;        // for people
  // The class part of WM_CLASS, the GTK or Wayland application id: one of these, byte by byte.
  std::vector<std::string> windowClasses;
  // Globs for the address of the page in front; empty: the window is no browser's.
  std::vector<std::string> documents;
  // Nothing: the window shows itself as the player of player.h does, and is read as it is.
  std::optional<LyricsPattern> lyrics;

  // The content of a browser's window is looked through only while its process has an MPRIS player.
  bool isPage() const { return !documents.empty(); }
};

using PlayerDescriptionPtr = std::shared_ptr<const PlayerDescription>;

}  // namespace vellora
