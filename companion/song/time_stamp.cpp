#include "companion/song/time_stamp.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <fmt/format.h>

namespace vellora::companion {
namespace {

constexpr double longest = 360'000;  // 100 hours

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Up to `most` digits; nothing for none, more, or another character.
std::optional<double> digits(std::string_view text, std::size_t most) {
  if (text.empty() || text.size() > most) return std::nullopt;
  if (!std::ranges::all_of(text, isDigit)) return std::nullopt;
  double value = 0;
  for (const char c : text) value = value * 10 + (c - '0');
  return value;
}

// "12" or "12.345"; the fraction is a whole number divided once, so that it is rounded once.
std::optional<double> secondsOf(std::string_view text, std::size_t most) {
  const std::size_t point = text.find_first_of(".,");
  const auto whole = digits(text.substr(0, point), most);
  if (!whole || point == std::string_view::npos) return whole;
  const auto fraction = digits(text.substr(point + 1), 6);
  if (!fraction) return std::nullopt;
  const double scale = std::pow(10.0, static_cast<double>(text.size() - point - 1));
  return (*whole * scale + *fraction) / scale;
}

std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> parts;
  while (parts.size() < 4) {
    const std::size_t colon = text.find(':');
    parts.push_back(text.substr(0, colon));
    if (colon == std::string_view::npos) break;
    text.remove_prefix(colon + 1);
  }
  return parts;
}

}  // namespace

std::optional<double> parseTime(std::string_view text) {
  const auto parts = split(text);
  if (parts.size() > 3) return std::nullopt;
  double total = 0;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const bool last = i + 1 == parts.size();
    const auto value = last ? secondsOf(parts[i], 6) : digits(parts[i], 4);
    if (!value || (i > 0 && *value >= 60)) return std::nullopt;
    total = total * 60 + *value;
  }
  if (total > longest) return std::nullopt;
  return total;
}

std::optional<double> parseStamp(std::string_view text) {
  const auto parts = split(text);
  if (parts.size() == 3 && parts[2].find_first_of(".,") == std::string_view::npos) {
    const auto minutesAndSeconds = parseTime(text.substr(0, text.rfind(':')));
    const auto hundredths = digits(parts[2], 2);
    if (!minutesAndSeconds || !hundredths) return std::nullopt;
    return *minutesAndSeconds + *hundredths / (parts[2].size() == 1 ? 10.0 : 100.0);
  }
  return parts.size() < 2 ? std::nullopt : parseTime(text);
}

bool looksLikeStamp(std::string_view text) {
  const std::size_t colon = text.find(':');
  return colon != std::string_view::npos && colon > 0 &&
         std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon), isDigit);
}

std::string clockText(double seconds) {
  if (!(seconds > 0)) seconds = 0;
  const auto whole = static_cast<long long>(std::min(seconds, longest));
  if (whole >= 3600) {
    return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
  }
  return fmt::format("{}:{:02}", whole / 60, whole % 60);
}

std::string stampText(double seconds) {
  if (!(seconds > 0)) seconds = 0;
  const auto hundredths = std::llround(std::min(seconds, longest) * 100);
  return fmt::format("[{:02}:{:02}.{:02}]", hundredths / 6000, hundredths / 100 % 60,
                     hundredths % 100);
}

}  // namespace vellora::companion
