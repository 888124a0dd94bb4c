#include "companion/library/checking_json.h"

#include <ostream>

#include <nlohmann/json.hpp>

namespace vellora::companion {
namespace {

using Json = nlohmann::ordered_json;

Json jsonOf(const std::vector<Problem>& problems) {
  Json list = Json::array();
  for (const Problem& problem : problems) {
    list.push_back({{"severity", nameOf(problem.severity)},
                    {"file", problem.file},
                    {"line", problem.line},
                    {"message", problem.message},
                    {"advice", problem.advice}});
  }
  return list;
}

}  // namespace

CheckSummary checkLibraryAsJson(const Library& library, const CheckProgress& progress,
                                std::ostream& out) {
  CheckSummary sum;
  sum.count(library.problems());
  Json songs = Json::array();
  for (const LibrarySong& from : library.songs()) {
    if (progress) progress(songs.size(), library.songs().size());
    const Song song = library.load(from);
    const std::vector<Problem> problems = problemsOf(from, song);
    sum += summaryOf(song, problems);
    songs.push_back({{"title", from.names.title},
                     {"artist", from.names.artist},
                     {"file", from.files.lyrics.string()},
                     {"translation", from.files.translation.string()},
                     {"lines", song.lines.size()},
                     {"translated", song.translated()},
                     {"complete", song.complete()},
                     {"problems", jsonOf(problems)}});
  }
  const Json whole{{"songs", std::move(songs)},
                   {"problems", jsonOf(library.problems())},
                   {"summary",
                    {{"songs", sum.songs},
                     {"complete", sum.complete},
                     {"errors", sum.errors},
                     {"warnings", sum.warnings}}}};
  out << whole.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
  return sum;
}

}  // namespace vellora::companion
