#include "companion/service/lyrics_service.h"

#include <string_view>
#include <utility>
#include <vector>

#include "companion/lyrics/plain.h"
#include "companion/song/lrc.h"

namespace vellora::companion {
namespace {

constexpr int found = 200;
constexpr int notFound = 404;
constexpr int tooManyRequests = 429;

bool answers(const Fetched& fetched, int status) {
  return fetched.outcome == Fetched::Outcome::answered && fetched.status == status;
}

// That the service lacks the song, in its own words: a gate before the network has pages instead.
bool saysNotFound(const Fetched& fetched) {
  return answers(fetched, notFound) && isObject(fetched.body);
}

// What the server did, after its name.
std::string failureOf(const Fetched& fetched) {
  switch (fetched.outcome) {
    case Fetched::Outcome::unreachable:
      return "cannot be reached: is there a network?";
    case Fetched::Outcome::timedOut:
      return "does not answer in time";
    case Fetched::Outcome::tooLarge:
      return "answers with more than is taken";
    case Fetched::Outcome::broken:
      return "fails: " + fetched.detail;
    case Fetched::Outcome::answered:
      break;
  }
  if (fetched.status == found) return "answers with what is no LRCLIB record";
  if (fetched.status == tooManyRequests) return "asks to be left alone for a while";
  return "fails with HTTP status " + std::to_string(fetched.status);
}

}  // namespace

LyricsService::LyricsService(ServerAddress server, LyricsCache cache, std::unique_ptr<Fetch> fetch)
    : server_(std::move(server)), cache_(std::move(cache)), fetch_(std::move(fetch)) {}

void LyricsService::want(const std::optional<WantedSong>& song) {
  if (song == wanted_) return;
  fetch_->cancel();
  wanted_ = song;
  gotten_.reset();
  outcome_.clear();
  state_ = State::nothingToDo;
  if (!wanted_) return;
  introduced_ = true;
  if (wanted_->title.empty() || wanted_->artist.empty()) {
    outcome_ = server_.name + " is asked only for songs with title and artist";
  } else {
    state_ = State::begun;
  }
}

std::optional<FoundLyrics> LyricsService::step(double now) {
  switch (state_) {
    case State::nothingToDo:
      return std::nullopt;
    case State::begun:
      return begin(now);
    case State::waiting:
      if ((now >= since_ && now < since_ + settling) || !rest_.over(now)) return std::nullopt;
      fetch_->start(server_.base + getRequest(*wanted_));
      state_ = State::getting;
      return std::nullopt;
    case State::getting:
      if (auto fetched = fetch_->step()) return takeGotten(*std::move(fetched), now);
      return std::nullopt;
    case State::searching:
      if (auto fetched = fetch_->step()) return takeSearched(*std::move(fetched), now);
  }
  return std::nullopt;
}

// A server that is left alone is not waited for.
bool LyricsService::underWay(double now) const {
  return state_ != State::nothingToDo && (state_ != State::waiting || rest_.over(now));
}

std::optional<FoundLyrics> LyricsService::begin(double now) {
  since_ = now;
  state_ = State::waiting;
  const auto kept = cache_.find(*wanted_, now);
  return kept ? tell(*kept) : std::nullopt;
}

std::optional<FoundLyrics> LyricsService::takeGotten(Fetched fetched, double now) {
  if (answers(fetched, found)) {
    gotten_ = readRecord(fetched.body);
    if (!gotten_) return fail(fetched, now);
    // Of another song, whatever the server makes of what it was asked.
    if (!isOf(*gotten_, *wanted_)) gotten_.reset();
    if (gotten_ && (gotten_->instrumental || !gotten_->synced.empty())) {
      return conclude(&*gotten_, now);
    }
  } else if (!saysNotFound(fetched)) {
    return fail(fetched, now);
  }
  fetch_->start(server_.base + searchRequest(*wanted_));
  state_ = State::searching;
  return std::nullopt;
}

std::optional<FoundLyrics> LyricsService::takeSearched(Fetched fetched, double now) {
  std::vector<LyricsRecord> records;
  if (answers(fetched, found)) {
    auto read = readRecords(fetched.body);
    if (!read) return goOnWithout(fetched, now);
    records = *std::move(read);
  } else if (!saysNotFound(fetched)) {
    return goOnWithout(fetched, now);
  }
  if (gotten_) records.insert(records.begin(), *std::move(gotten_));
  return conclude(bestOf(records, *wanted_), now);
}

// The search has failed; what the first request brought is better than nothing, but not kept.
std::optional<FoundLyrics> LyricsService::goOnWithout(const Fetched& searched, double now) {
  const auto gotten = std::exchange(gotten_, std::nullopt);
  fail(searched, now);
  if (!gotten || gotten->plain.empty()) return std::nullopt;
  return tell({gotten->plain, false, now});
}

std::optional<FoundLyrics> LyricsService::conclude(const LyricsRecord* best, double now) {
  rest_.succeed();
  failure_.clear();
  KeptLyrics answer;
  answer.fetchedAt = now;
  if (best != nullptr) {
    answer.instrumental = best->instrumental;
    if (!best->instrumental) answer.lyrics = best->synced.empty() ? best->plain : best->synced;
  }
  cache_.keep(*wanted_, answer);
  return tell(answer);
}

std::optional<FoundLyrics> LyricsService::tell(const KeptLyrics& answer) {
  state_ = State::nothingToDo;
  if (answer.lyrics.empty()) {
    outcome_ = server_.name + (answer.instrumental ? " says that this piece has no words"
                                                   : " has no lyrics of this song");
    return std::nullopt;
  }
  outcome_ = "the lyrics come from " + server_.name;
  LyricFile lyrics = readLrc(server_.name, answer.lyrics);
  if (!lyrics.timed()) lyrics = readPlain(server_.name, answer.lyrics);
  return FoundLyrics{std::move(lyrics), server_.name};
}

std::nullopt_t LyricsService::fail(const Fetched& fetched, double now) {
  gotten_.reset();
  rest_.fail(now, fetched.retryAfter);
  failure_ = server_.name + " " + failureOf(fetched);
  state_ = State::waiting;
  return std::nullopt;
}

std::string LyricsService::report() const {
  if (!introduced_) {
    return server_.name +
           " is asked for lyrics that the folder lacks, by title, artist, album and "
           "length";
  }
  if (!wanted_ || !outcome_.empty()) return outcome_;
  return failure_.empty() ? server_.name + " is asked for the lyrics" : failure_;
}

std::unique_ptr<LyricsSource> makeLyricsService(const ServerAddress& server,
                                                const std::filesystem::path& cache) {
  return std::make_unique<LyricsService>(
      server, LyricsCache(cache, server.name),
      makeCurlFetch("Vellora/" VELLORA_VERSION " (" VELLORA_HOME ")"));
}

}  // namespace vellora::companion
