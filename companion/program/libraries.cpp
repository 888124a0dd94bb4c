#include "companion/program/libraries.h"

#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>

#include <unistd.h>

#include "companion/library/checking.h"
#include "companion/library/checking_json.h"
#include "companion/library/importing.h"
#include "companion/program/progress_line.h"
#include "platform/system_clock.h"

namespace vellora::companion {
namespace {

bool isFolder(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error);
}

Library libraryOf(const Options& options) {
  Library library(options.folder, options.language);
  ProgressLine progress("files read");
  for (const SystemClock clock; library.looking();) {
    library.look(clock.now());
    progress.show(library.work().files, 0);
  }
  return library;
}

// On a terminal the lines that are written for each song say enough.
CheckProgress shownBy(ProgressLine& line) {
  if (isatty(STDOUT_FILENO) == 1) return {};
  return [&line](std::size_t done, std::size_t all) { line.show(done, all); };
}

}  // namespace

int check(const Options& options) {
  if (!isFolder(options.folder))
    return fail(filesFailed, options.folder.string() + " is no folder");
  const Library library = libraryOf(options);
  ProgressLine line("songs checked");
  const CheckSummary summary = options.json ? checkLibraryAsJson(library, shownBy(line), std::cout)
                                            : checkLibrary(library, shownBy(line), std::cout);
  line.clear();
  if (summary.songs == 0 && !options.json) std::cout << "a song is a file song.lrc; see --help\n";
  return summary.clean() ? allWell : findings;
}

int import(const Options& options) {
  if (!isFolder(options.folder))
    return fail(filesFailed, options.folder.string() + " is no folder");
  std::error_code error;
  if (std::filesystem::equivalent(options.folder, options.importTo, error)) {
    return fail(filesFailed, "--to names the folder that is read; name another");
  }
  std::filesystem::create_directories(options.importTo, error);
  if (!isFolder(options.importTo)) {
    return fail(filesFailed, options.importTo.string() + " cannot be made: " + error.message());
  }
  const Library library = libraryOf(options);
  ProgressLine line("songs imported");
  const ImportSummary summary =
      importSongs(library, options.importTo, options.force, shownBy(line), std::cout);
  if (summary.failed) return filesFailed;
  return summary.check.clean() && summary.kept == 0 ? allWell : findings;
}

}  // namespace vellora::companion
