#include "controller/model/plain_captions.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace vellora::model {

namespace {

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \n");
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(" \n") - begin + 1);
}

}  // namespace

std::string keyOf(const std::string& text) {
  std::string key;
  for (const unsigned char c : text) {
    if (std::isalnum(c) != 0) key += static_cast<char>(std::tolower(c));
  }
  return key;
}

std::string plainLookup(const std::string& row, const std::vector<Line>& lines) {
  const std::string wanted = keyOf(row);
  if (wanted.empty()) return "";
  for (std::size_t start = 0; start < lines.size(); ++start) {
    std::string said;
    std::string translation;
    for (std::size_t i = start; i < lines.size() && i < start + 6; ++i) {
      const std::string key = keyOf(lines[i].source);
      const std::string part = trimmed(lines[i].translation);
      if (key.empty() || part.empty()) break;
      said += key;
      translation += (i == start ? "" : " ") + part;
      if (said == wanted) return translation;
    }
  }
  return "";
}

bool namesTrack(const std::string& shown, const std::string& title, const std::string& artist) {
  if (keyOf(title).empty() || keyOf(artist).empty()) return false;
  const std::string wanted = keyOf(title) + keyOf(artist);
  return keyOf(shown).substr(0, wanted.size()) == wanted;
}

std::optional<Box> commonPart(const Box& a, const Box& b) {
  const double left = std::max(a.x, b.x);
  const double top = std::max(a.y, b.y);
  const double right = std::min(a.x + a.width, b.x + b.width);
  const double bottom = std::min(a.y + a.height, b.y + b.height);
  if (right < left || bottom < top) return {};
  return Box{left, top, right - left, bottom - top};
}

double captionHeight(const std::string& text, double font) {
  const double lines = std::ceil(static_cast<double>(text.size()) / charactersPerLine);
  return std::min(lines * 20, std::ceil(font * 2.6)) + 8;
}

std::optional<Box> captionPlace(const Box& row, const std::optional<Box>& next, const Box& viewport,
                                double height, double offset) {
  const double right = viewport.x + viewport.width;
  const double bottom = viewport.y + viewport.height;
  const double middleX = row.x + row.width / 2;
  const double middleY = row.y + row.height / 2;
  const bool inside =
      middleX >= viewport.x && middleX < right && middleY >= viewport.y && middleY < bottom;
  if (!inside || row.width <= 40) return {};
  const double top = row.y + row.height + 2 + offset;
  const double below = std::min(next ? next->y : bottom, bottom);
  if (top + height + 3 > below) return {};
  const double left = std::max(row.x, viewport.x);
  const double width = right - left - 24;
  if (width < 80 || top < viewport.y) return {};
  return Box{left + 2, top, width, height};
}

double softnessOf(const Box& row, const Box& viewport) {
  const double line = viewport.y + 0.35 * viewport.height;
  const double away = std::abs(row.y - line) / viewport.height;
  if (away <= 0.055) return 0;
  return std::round(8 * std::min((away - 0.055) / 0.14, 1.0)) / 8;
}

}  // namespace vellora::model
