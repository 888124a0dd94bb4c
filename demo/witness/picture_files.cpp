#include "witness/picture_files.h"

#include <sstream>
#include <utility>

#include "base/files.h"

namespace vellora::witness {

namespace {

class Pictures final : public Screen {
 public:
  Pictures(Picture whole, WindowPicture alone)
      : whole_(std::move(whole)), alone_(std::move(alone)) {}

  std::optional<Picture> whole() const override { return whole_; }
  std::optional<WindowPicture> windowAlone(const std::string&) const override { return alone_; }

 private:
  Picture whole_;
  WindowPicture alone_;
};

std::optional<Picture> readPicture(const std::string& path) {
  const auto bytes = readWholeFile(path);
  return bytes ? readPpm(*bytes) : std::nullopt;
}

}  // namespace

std::optional<Picture> readPpm(std::string_view bytes) {
  std::istringstream head{std::string(bytes.substr(0, 64))};
  std::string form;
  int most = 0;
  Picture picture;
  head >> form >> picture.width >> picture.height >> most;
  if (!head || form != "P6" || most != 255 || picture.width < 1 || picture.height < 1) {
    return std::nullopt;
  }
  const auto start = static_cast<std::size_t>(head.tellg()) + 1;
  const std::size_t count =
      static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
  if (start > bytes.size() || (bytes.size() - start) / 3 < count) return std::nullopt;
  picture.pixels.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      const auto level = static_cast<unsigned char>(bytes[start + i * 3 + channel]);
      picture.pixels[i] = (picture.pixels[i] << 8U) | level;
    }
  }
  return picture;
}

std::unique_ptr<Screen> openPictures(const std::string& whole, const std::string& alone) {
  auto first = readPicture(whole);
  auto second = readPicture(alone);
  if (!first || !second) return nullptr;
  // Without a frame the window's pixels are taken for points.
  return std::make_unique<Pictures>(std::move(*first), WindowPicture{std::move(*second), {}});
}

}  // namespace vellora::witness
