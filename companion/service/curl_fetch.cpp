#include <cmath>
#include <string_view>
#include <utility>

#include <curl/curl.h>
#include <fcntl.h>

#include "companion/service/fetch.h"

namespace vellora::companion {
namespace {

// libcurl's own state, which counts its users.
struct CurlLibrary {
  CurlLibrary() { curl_global_init(CURL_GLOBAL_DEFAULT); }
  ~CurlLibrary() { curl_global_cleanup(); }
  CurlLibrary(const CurlLibrary&) = delete;
  CurlLibrary& operator=(const CurlLibrary&) = delete;
};

// CURL and CURLM are both another name for void.
struct RequestDeleter {
  void operator()(CURL* request) const { curl_easy_cleanup(request); }
};
struct RequestsDeleter {
  void operator()(CURLM* requests) const { curl_multi_cleanup(requests); }
};
struct HeadersDeleter {
  void operator()(curl_slist* headers) const { curl_slist_free_all(headers); }
};
using RequestPtr = std::unique_ptr<CURL, RequestDeleter>;
using RequestsPtr = std::unique_ptr<CURLM, RequestsDeleter>;
using HeadersPtr = std::unique_ptr<curl_slist, HeadersDeleter>;

long milliseconds(double seconds) { return std::lround(seconds * 1000); }

// A program that is started meanwhile gets nothing of the connection.
int closeOnStart(void*, curl_socket_t socket, curlsocktype) {
  return fcntl(socket, F_SETFD, FD_CLOEXEC) == 0 ? CURL_SOCKOPT_OK : CURL_SOCKOPT_ERROR;
}

Fetched::Outcome outcomeOf(CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_CONNECT:
    case CURLE_INTERFACE_FAILED:
      return Fetched::Outcome::unreachable;
    case CURLE_OPERATION_TIMEDOUT:
      return Fetched::Outcome::timedOut;
    case CURLE_FILESIZE_EXCEEDED:
      return Fetched::Outcome::tooLarge;
    default:
      return Fetched::Outcome::broken;
  }
}

// An answer while it comes.
struct Body {
  std::size_t largest = 0;
  std::string bytes;
  bool tooLarge = false;
};

std::size_t takeBytes(char* bytes, std::size_t, std::size_t count, void* taker) {
  Body& body = *static_cast<Body*>(taker);
  body.tooLarge = count > body.largest - body.bytes.size();
  if (body.tooLarge) return 0;
  body.bytes.append(bytes, count);
  return count;
}

class CurlFetch final : public Fetch {
 public:
  CurlFetch(std::string userAgent, FetchLimits limits)
      : userAgent_(std::move(userAgent)),
        limits_(limits),
        accept_(curl_slist_append(nullptr, "Accept: application/json")),
        requests_(curl_multi_init()) {}
  ~CurlFetch() override { cancel(); }
  CurlFetch(const CurlFetch&) = delete;
  CurlFetch& operator=(const CurlFetch&) = delete;

  void start(const std::string& url) override {
    cancel();
    body_ = {limits_.largest, {}, false};
    request_.reset(curl_easy_init());
    ready_ = request_ && describe(url) &&
             curl_multi_add_handle(requests_.get(), request_.get()) == CURLM_OK;
  }

  std::optional<Fetched> step() override {
    if (!request_) return std::nullopt;
    if (!ready_) {
      request_.reset();
      return Fetched{Fetched::Outcome::broken, 0, {}, {}, "libcurl cannot do it"};
    }
    int running = 0;
    curl_multi_perform(requests_.get(), &running);
    int waiting = 0;
    while (const CURLMsg* const message = curl_multi_info_read(requests_.get(), &waiting)) {
      if (message->msg != CURLMSG_DONE) continue;
      Fetched fetched = finished(message->data.result);
      cancel();
      return fetched;
    }
    return std::nullopt;
  }

  void cancel() override {
    if (request_) curl_multi_remove_handle(requests_.get(), request_.get());
    request_.reset();
  }

 private:
  // False where this libcurl lacks something, and the request would be less bounded than it has to
  // be. libcurl keeps SIGPIPE from the program by itself, which CURLOPT_NOSIGNAL would switch off.
  bool describe(const std::string& url) {
    bool all = true;
    const auto set = [&](CURLoption option, auto value) {
      all = curl_easy_setopt(request_.get(), option, value) == CURLE_OK && all;
    };
    const bool secure = url.starts_with("https:");
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_USERAGENT, userAgent_.c_str());
    set(CURLOPT_HTTPHEADER, accept_.get());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, secure ? "https" : "http,https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, static_cast<long>(limits_.redirections));
    set(CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    set(CURLOPT_CONNECTTIMEOUT_MS, milliseconds(limits_.connect));
    set(CURLOPT_TIMEOUT_MS, milliseconds(limits_.whole));
    set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits_.largest));
    set(CURLOPT_WRITEFUNCTION, &takeBytes);
    set(CURLOPT_WRITEDATA, &body_);
    set(CURLOPT_SOCKOPTFUNCTION, &closeOnStart);
    // A name is looked up in a thread of libcurl's, which nothing then waits for.
    set(CURLOPT_QUICK_EXIT, 1L);
    return all;
  }

  Fetched finished(CURLcode code) {
    Fetched fetched;
    if (code != CURLE_OK) {
      fetched.outcome = body_.tooLarge ? Fetched::Outcome::tooLarge : outcomeOf(code);
      fetched.detail = curl_easy_strerror(code);
      return fetched;
    }
    long status = 0;
    curl_easy_getinfo(request_.get(), CURLINFO_RESPONSE_CODE, &status);
    fetched.status = static_cast<int>(status);
    fetched.body = std::move(body_.bytes);
    curl_off_t seconds = 0;
    curl_easy_getinfo(request_.get(), CURLINFO_RETRY_AFTER, &seconds);
    if (seconds > 0) fetched.retryAfter = static_cast<double>(seconds);
    return fetched;
  }

  CurlLibrary library_;
  std::string userAgent_;
  FetchLimits limits_;
  HeadersPtr accept_;
  RequestsPtr requests_;
  Body body_;
  RequestPtr request_;
  bool ready_ = false;  // the request was handed to libcurl
};

}  // namespace

std::unique_ptr<Fetch> makeCurlFetch(std::string userAgent, FetchLimits limits) {
  return std::make_unique<CurlFetch>(std::move(userAgent), limits);
}

}  // namespace vellora::companion
