#pragma once

#include <filesystem>
#include <string>

#include "companion/exchange/keeper.h"
#include "companion/service/server_address.h"

namespace vellora::companion {

// What the user settles once, in the file or on the command line; each member's default is what
// holds without either. The table (setting.h) has a row for each.
struct Settings {
  std::filesystem::path folder;    // of songs; empty where none is named
  std::filesystem::path exchange;  // empty where the usual one shall be taken
  std::string language;            // BCP 47; empty for the system's
  CaptionSettings captions;
  // "lrclib" where a service shall be asked for lyrics that the folder lacks, else "none".
  std::string lyrics = "none";
  std::string lyricsServer{defaultLyricsServer};
  bool plain = false;
  bool overlay = false;
  std::string overlayProgram;
  std::string reading = "none";       // a name of a kind of reading
  std::string readingWith = "above";  // or "alone"
  std::string translator;             // a command; empty where none is wanted
  double translatorTime = 60;         // seconds for a song
  double patience = 8;                // seconds that a command's effect is waited for
};

}  // namespace vellora::companion
