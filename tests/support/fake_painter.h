#pragma once

#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/caption_painter.h"
#include "support/log.h"

namespace vellora {

// A picture that only tells how it came about: "sharp 1", "blur of sharp 1".
struct FakeImage final : CaptionImage {
  explicit FakeImage(std::string name_) : name(std::move(name_)) {}
  std::string name;
};

// A surface that writes down what is drawn on it.
class FakeSurface final : public Surface {
 public:
  explicit FakeSurface(Log& log) : log_(log) {}

  void drawImage(const CaptionImage& image, const Rect& destination) override {
    const auto& picture = static_cast<const FakeImage&>(image);
    log_.push_back("draw " + picture.name);
    destinations.push_back(destination);
  }

  std::vector<Rect> destinations;

 private:
  Log& log_;
};

// A painter whose texts are one line of `lineHeight` for every `charactersPerLine` bytes, whatever
// the font and the width, and whose painting fails on demand. Logs "measure", "paint" and "blur".
class FakePainter final : public CaptionPainter {
 public:
  explicit FakePainter(Log& log) : log_(log) {}

  bool setTranslation(const std::vector<std::string_view>& texts) override {
    translations.emplace_back(texts.begin(), texts.end());
    return translationsDiffer;
  }

  double measureHeight(std::string_view text, double fontSize, double width,
                       double maximumHeight) override {
    log_.push_back("measure " + std::string(text));
    measurements.push_back({fontSize, width, maximumHeight});
    const double lines =
        std::ceil(static_cast<double>(text.size()) / static_cast<double>(charactersPerLine));
    return std::fmin(lines * lineHeight, maximumHeight);
  }

  std::shared_ptr<const CaptionImage> paint(const CaptionDrawing& drawing) override {
    log_.push_back("paint " + drawing.text);
    drawings.push_back(drawing);
    if (paintingFails || drawing.text == unpaintableText) return nullptr;
    if (drawing.pixelWidth < 1 || drawing.pixelHeight < 1) return nullptr;
    return std::make_shared<FakeImage>("sharp " + std::to_string(drawings.size()));
  }

  std::shared_ptr<const CaptionImage> blur(const CaptionImage& image, double radius) override {
    const std::string& name = static_cast<const FakeImage&>(image).name;
    log_.push_back("blur " + name);
    radii.push_back(radius);
    if (blurringFails) return nullptr;
    return std::make_shared<FakeImage>("blur of " + name);
  }

  struct Measurement {
    double fontSize = 0;
    double width = 0;
    double maximumHeight = 0;
    bool operator==(const Measurement&) const = default;
  };

  std::vector<std::vector<std::string>> translations;
  bool translationsDiffer = false;  // in how their texts look
  std::vector<Measurement> measurements;
  std::vector<CaptionDrawing> drawings;
  std::vector<double> radii;
  double lineHeight = 20;
  std::size_t charactersPerLine = 1000;
  bool paintingFails = false;  // of every text
  std::optional<std::string> unpaintableText;
  bool blurringFails = false;

 private:
  Log& log_;
};

}  // namespace vellora
