#pragma once

#include <memory>

#import <AppKit/AppKit.h>
#import <CoreImage/CoreImage.h>

#include "platform/caption_painter.h"
#import "platform/macos/cf_ptr.h"

namespace vellora {

// A caption's picture as AppKit draws it, with its pixels beside it for the blur.
class AppKitImage final : public CaptionImage {
 public:
  // `size` in points; the pixels are not null.
  AppKitImage(CfPtr<CGImageRef> pixels, NSSize size);

  CGImageRef pixels() const { return pixels_.get(); }
  NSImage* image() const { return image_; }

 private:
  const CfPtr<CGImageRef> pixels_;
  NSImage* const image_;
};

// Draws into the current graphics context, that of a view that is being drawn.
class AppKitSurface final : public Surface {
 public:
  void drawImage(const CaptionImage& image, const Rect& destination) override;
};

// A view's cached display.
class AppKitBitmap final : public Bitmap {
 public:
  explicit AppKitBitmap(NSBitmapImageRep* representation) : representation_(representation) {}

  std::int64_t pixelWidth() const override { return representation_.pixelsWide; }
  std::int64_t pixelHeight() const override { return representation_.pixelsHigh; }
  std::optional<double> alpha(std::int64_t column, std::int64_t row) const override;
  std::optional<std::vector<std::uint8_t>> png() const override;

  NSBitmapImageRep* representation() const { return representation_; }

 private:
  NSBitmapImageRep* const representation_;
};

// Paints with AppKit, blurs with Core Image.
std::unique_ptr<CaptionPainter> makeAppKitPainter();

}  // namespace vellora
