#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace vellora::companion {

// What came of a request.
struct Fetched {
  enum class Outcome {
    answered,     // `status` and `body` say what
    unreachable,  // no network, no such host, or nobody listens there
    timedOut,
    tooLarge,
    broken  // cut short, not HTTP, a certificate that is not trusted, a redirection too many
  };
  Outcome outcome = Outcome::answered;
  int status = 0;  // of HTTP
  std::string body;
  std::optional<double> retryAfter;  // seconds until which the server asks to be left alone
  std::string detail;                // what was broken, for people
};

// One request to a web server at a time. Nothing here waits. One thread.
class Fetch {
 public:
  virtual ~Fetch() = default;
  Fetch() = default;
  Fetch(const Fetch&) = delete;
  Fetch& operator=(const Fetch&) = delete;

  // Begins to get what is at that address, in the place of what was begun before.
  virtual void start(const std::string& url) = 0;
  // Goes on with it. What came of it, once.
  virtual std::optional<Fetched> step() = 0;
  // Ends what was begun, at once.
  virtual void cancel() = 0;
};

// Bounds of a request. Seconds and bytes.
struct FetchLimits {
  double connect = 5;
  double whole = 15;
  std::size_t largest = std::size_t{1024} * 1024;
  int redirections = 3;
};

// By libcurl: http and https only, and never from https to http; certificates are checked; no
// cookies, no passwords; proxies as the environment names them (http_proxy, https_proxy, no_proxy).
// `userAgent`: who asks.
std::unique_ptr<Fetch> makeCurlFetch(std::string userAgent, FetchLimits limits = {});

}  // namespace vellora::companion
