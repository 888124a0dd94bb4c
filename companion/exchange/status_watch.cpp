#include "companion/exchange/status_watch.h"

namespace vellora::companion {
namespace {

// Also where the clock was set back.
bool isWithin(double now, double since, double span) { return now >= since && now - since < span; }

}  // namespace

StatusWatch::Step StatusWatch::step(double now, const std::optional<OverlayStatus>& status,
                                    const std::optional<NowPlayingTrack>& published) {
  if (!status) {
    if (askedAt_ && isWithin(now, *askedAt_, patience)) return {last_};
    last_.clear();
    askedAt_.reset();
    return {};
  }
  const bool tells = published && isWithin(now, published->updatedAt, freshness);
  const bool speaks = askedAt_ || status->message != last_;
  if (speaks || tells || now < heardAt_) heardAt_ = now;
  askedAt_.reset();
  last_ = status->message;
  const bool withdraw = !status->stopped && !isWithin(now, heardAt_, interval);
  if (withdraw) askedAt_ = now;
  return {status->message, withdraw};
}

}  // namespace vellora::companion
