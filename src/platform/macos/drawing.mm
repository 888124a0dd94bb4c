#import "platform/macos/drawing.h"

#include <utility>

#import "platform/macos/convert.h"

namespace vellora {

namespace {

NSFont* captionFont(double size) {
  return [NSFont systemFontOfSize:size weight:NSFontWeightMedium];
}

// Both the plate and the text, into the current context, whose unit is a point with y downward.
void drawCaption(const CaptionDrawing& drawing, CGContextRef context) {
  [toNSColor(drawing.plateColor) setFill];
  [[NSBezierPath bezierPathWithRoundedRect:toNSRect(drawing.plate)
                                   xRadius:drawing.cornerRadius
                                   yRadius:drawing.cornerRadius] fill];

  NSMutableParagraphStyle* const paragraph = [[NSMutableParagraphStyle alloc] init];
  paragraph.lineBreakMode = NSLineBreakByTruncatingTail;
  NSDictionary<NSAttributedStringKey, id>* const attributes = @{
    NSFontAttributeName : captionFont(drawing.fontSize),
    NSForegroundColorAttributeName : toNSColor(drawing.textColor),
    NSParagraphStyleAttributeName : paragraph,
  };
  // Text is laid out top-down and stands upright only in a context that is marked flipped.
  NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithCGContext:context
                                                                             flipped:YES];
  [toNSString(drawing.text) drawInRect:toNSRect(drawing.textRect) withAttributes:attributes];
}

class AppKitPainter final : public CaptionPainter {
 public:
  AppKitPainter()
      : imageContext([CIContext contextWithOptions:
                                    @{kCIContextCacheIntermediates : @NO}]) {}

  // The system chooses letter forms by the user's languages.
  bool setTranslation(const std::vector<std::string_view>&) override { return false; }

  double measureHeight(std::string_view text, double fontSize, double width,
                       double maximumHeight) override {
    @autoreleasepool {
      const NSRect bounds =
          [toNSString(text) boundingRectWithSize:NSMakeSize(width, maximumHeight)
                                         options:NSStringDrawingUsesLineFragmentOrigin |
                                                 NSStringDrawingUsesFontLeading
                                      attributes:@{NSFontAttributeName : captionFont(fontSize)}
                                         context:nil];
      return bounds.size.height;
    }
  }

  std::shared_ptr<const CaptionImage> paint(const CaptionDrawing& drawing) override {
    @autoreleasepool {
      NSBitmapImageRep* const bitmap =
          [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                  pixelsWide:drawing.pixelWidth
                                                  pixelsHigh:drawing.pixelHeight
                                               bitsPerSample:8
                                             samplesPerPixel:4
                                                    hasAlpha:YES
                                                    isPlanar:NO
                                              colorSpaceName:NSDeviceRGBColorSpace
                                                 bytesPerRow:0
                                                bitsPerPixel:0];
      if (bitmap == nil) return nullptr;
      // Made before the bitmap has its size in points: its unit is a pixel until it is scaled.
      // Kept to the end: drawCaption puts another in its place as the current one.
      NS_VALID_UNTIL_END_OF_SCOPE NSGraphicsContext* const context =
          [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap];
      if (context == nil) return nullptr;
      const NSSize size = NSMakeSize(drawing.size.width, drawing.size.height);
      bitmap.size = size;

      [NSGraphicsContext saveGraphicsState];
      NSGraphicsContext.currentContext = context;
      const CGContextRef target = context.CGContext;
      CGContextScaleCTM(target, drawing.scale, drawing.scale);
      CGContextTranslateCTM(target, 0, drawing.size.height);
      CGContextScaleCTM(target, 1, -1);
      drawCaption(drawing, target);
      [NSGraphicsContext restoreGraphicsState];

      CfPtr<CGImageRef> pixels = retained(bitmap.CGImage);
      if (pixels == nullptr) return nullptr;
      return std::make_shared<AppKitImage>(std::move(pixels), size);
    }
  }

  std::shared_ptr<const CaptionImage> blur(const CaptionImage& image, double radius) override {
    @autoreleasepool {
      const auto& sharp = static_cast<const AppKitImage&>(image);
      CIImage* const input = [CIImage imageWithCGImage:sharp.pixels()];
      CIFilter* const filter = [CIFilter filterWithName:@"CIGaussianBlur"];
      [filter setValue:input forKey:kCIInputImageKey];
      [filter setValue:@(radius) forKey:kCIInputRadiusKey];
      CIImage* const output = filter.outputImage;
      if (output == nil) return nullptr;
      CfPtr<CGImageRef> pixels([imageContext createCGImage:output fromRect:input.extent]);
      if (pixels == nullptr) return nullptr;
      return std::make_shared<AppKitImage>(std::move(pixels), sharp.image().size);
    }
  }

 private:
  CIContext* const imageContext;
};

}  // namespace

AppKitImage::AppKitImage(CfPtr<CGImageRef> pixels, NSSize size)
    : pixels_(std::move(pixels)),
      image_([[NSImage alloc] initWithCGImage:pixels_.get() size:size]) {}

void AppKitSurface::drawImage(const CaptionImage& image, const Rect& destination) {
  [static_cast<const AppKitImage&>(image).image() drawInRect:toNSRect(destination)
                                                    fromRect:NSZeroRect
                                                   operation:NSCompositingOperationSourceOver
                                                    fraction:1.0
                                              respectFlipped:YES
                                                       hints:nil];
}

std::optional<double> AppKitBitmap::alpha(std::int64_t column, std::int64_t row) const {
  @autoreleasepool {
    if (column < 0 || row < 0 || column >= pixelWidth() || row >= pixelHeight()) {
      return std::nullopt;
    }
    NSColor* const color = [representation_ colorAtX:column y:row];
    if (color == nil) return std::nullopt;
    return color.alphaComponent;
  }
}

std::optional<std::vector<std::uint8_t>> AppKitBitmap::png() const {
  @autoreleasepool {
    NSData* const data = [representation_ representationUsingType:NSBitmapImageFileTypePNG
                                                       properties:@{}];
    if (data == nil) return std::nullopt;
    const auto* const bytes = static_cast<const std::uint8_t*>(data.bytes);
    return std::vector<std::uint8_t>(bytes, bytes + data.length);
  }
}

std::unique_ptr<CaptionPainter> makeAppKitPainter() { return std::make_unique<AppKitPainter>(); }

}  // namespace vellora
