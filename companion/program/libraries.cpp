#include "companion/program/libraries.h"

#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>

#include "companion/library/checking.h"
#include "companion/library/importing.h"

namespace vellora::companion {
namespace {

bool isFolder(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error);
}

Library libraryOf(const Options& options) {
  Library library(options.folder, options.language);
  library.refresh();
  return library;
}

}  // namespace

int check(const Options& options) {
  if (!isFolder(options.folder))
    return fail(filesFailed, options.folder.string() + " is no folder");
  const Library library = libraryOf(options);
  const CheckSummary summary = checkLibrary(library, std::cout);
  if (summary.songs == 0) std::cout << "a song is a file song.lrc; see --help\n";
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
  const ImportSummary summary =
      importSongs(libraryOf(options), options.importTo, options.force, std::cout);
  if (summary.failed) return filesFailed;
  return summary.check.clean() && summary.kept == 0 ? allWell : findings;
}

}  // namespace vellora::companion
