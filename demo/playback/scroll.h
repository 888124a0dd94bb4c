#pragma once

namespace vellora::demo {

// Where the lyrics stand while they glide from one line to the next. Values are pixels of the
// scrolled content at the viewport's top, times seconds of one clock. Pure.
class Scroll {
 public:
  // How far down the viewport the top of the sung line stands, as a fraction of its height.
  static constexpr double readingLine = 0.35;
  static constexpr double duration = 0.45;

  // The scroll value that puts a row whose top is at `rowTop` of the content on the reading line.
  static double valueFor(double rowTop, double viewportHeight);

  void jumpTo(double value);
  // Begins to glide from where `now` finds it.
  void glideTo(double value, double now);
  // Slows down towards the target and stays there.
  double value(double now) const;
  bool isGliding(double now) const;
  double target() const { return target_; }

 private:
  double from_ = 0;
  double target_ = 0;
  double start_ = -duration;
};

}  // namespace vellora::demo
