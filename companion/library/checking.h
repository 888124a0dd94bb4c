#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "companion/library/library.h"

namespace vellora::companion {

// What a folder of lyrics is worth.
struct CheckSummary {
  std::size_t songs = 0;
  std::size_t complete = 0;
  std::size_t errors = 0;
  std::size_t warnings = 0;

  // No song is incomplete and nothing is lost.
  bool clean() const { return songs > 0 && complete == songs && errors == 0 && warnings == 0; }
  CheckSummary& operator+=(const CheckSummary& other);
  void count(const std::vector<Problem>& problems);
};

// Called before each song with how many are done, and how many there are.
using CheckProgress = std::function<void(std::size_t done, std::size_t all)>;

// What a song lacks, beside what its files' readers found: lines without a translation where these
// are more than the readers lost, lines that no row can match, and why a table does not give a line
// its translation.
std::vector<Problem> shortcomings(const LibrarySong& from, const Song& song);

// What the readers found and the shortcomings: those of its lyrics, then those of its translation,
// in the order of their lines.
std::vector<Problem> problemsOf(const LibrarySong& from, const Song& song);
CheckSummary summaryOf(const Song& song, const std::vector<Problem>& problems);

// Writes one line a song and one a problem to `out`.
CheckSummary checkSong(const LibrarySong& from, const Song& song, std::ostream& out);
// The folder's own problems, all songs, and a last line with the sums.
CheckSummary checkLibrary(const Library& library, const CheckProgress& progress, std::ostream& out);

}  // namespace vellora::companion
