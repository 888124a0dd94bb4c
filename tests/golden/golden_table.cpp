#include "golden/golden_table.h"

#include <bit>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

namespace vellora::golden {

namespace {

std::string folder() {
  const char* named = std::getenv("VELLORA_GOLDENS");
  return named != nullptr && *named != '\0' ? named : VELLORA_GOLDEN_FOLDER;
}

Row columnsOf(const std::string& line) {
  Row row;
  std::size_t begin = 0;
  while (true) {
    const std::size_t end = line.find('\t', begin);
    row.push_back(line.substr(begin, end == std::string::npos ? end : end - begin));
    if (end == std::string::npos) return row;
    begin = end + 1;
  }
}

std::uint64_t hex(std::string_view field) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value, 16);
  if (field.empty() || error != std::errc() || end != field.data() + field.size()) {
    throw std::runtime_error("not hex: " + std::string(field));
  }
  return value;
}

void appendUtf8(std::string& text, char32_t c) {
  const auto byte = [&](std::uint32_t value) { text.push_back(static_cast<char>(value)); };
  if (c < 0x80) {
    byte(c);
  } else if (c < 0x800) {
    byte(0xC0 | (c >> 6));
    byte(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    byte(0xE0 | (c >> 12));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  } else {
    byte(0xF0 | (c >> 18));
    byte(0x80 | ((c >> 12) & 0x3F));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  }
}

}  // namespace

void everyRow(const std::string& table, std::size_t columns,
              const std::function<std::string(const Row&)>& check) {
  const std::string path = folder() + "/" + table;
  std::ifstream file(path, std::ios::binary);
  ASSERT_TRUE(file.is_open()) << "cannot read " << path;
  std::size_t rows = 0;
  std::size_t wrong = 0;
  std::size_t lineNumber = 0;
  for (std::string line; std::getline(file, line);) {
    ++lineNumber;
    if (line.starts_with("# ")) continue;
    if (line.empty()) continue;
    ++rows;
    std::string problem;
    const Row row = columnsOf(line);
    if (row.size() < columns) {
      problem = "has " + std::to_string(row.size()) + " columns, not " + std::to_string(columns);
    } else {
      try {
        problem = check(row);
      } catch (const std::exception& error) {
        problem = error.what();
      }
    }
    if (!problem.empty() && ++wrong <= 20) {
      ADD_FAILURE() << table << ":" << lineNumber << ": " << problem << "\n  row: " << line;
    }
  }
  EXPECT_GT(rows, 0U) << path << " has no rows";
  EXPECT_EQ(wrong, 0U) << "wrong rows in " << path;
  std::cout << table << ": " << rows << " rows checked, " << wrong << " wrong\n";
}

std::string fromBase64(std::string_view field) {
  static constexpr std::string_view alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : field) {
    if (c == '=') break;
    const std::size_t value = alphabet.find(c);
    if (value == std::string_view::npos) {
      throw std::runtime_error("not base64: " + std::string(field));
    }
    bits = (bits << 6) | static_cast<std::uint32_t>(value);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes.push_back(static_cast<char>((bits >> count) & 0xFF));
    }
  }
  return bytes;
}

char32_t codePoint(std::string_view field) { return static_cast<char32_t>(hex(field)); }

std::string fromCodePoints(std::string_view field) {
  std::string text;
  std::istringstream words{std::string(field)};
  for (std::string word; words >> word;) appendUtf8(text, codePoint(word));
  return text;
}

double fromBits(std::string_view field) { return std::bit_cast<double>(hex(field)); }

double number(std::string_view field) {
  if (field == "inf") return std::numeric_limits<double>::infinity();
  if (field == "-inf") return -std::numeric_limits<double>::infinity();
  if (field == "nan") return std::numeric_limits<double>::quiet_NaN();
  // Not every C++ library has from_chars for these; no test changes the locale.
  const std::string digits(field);
  char* end = nullptr;
  const double value = std::strtod(digits.c_str(), &end);
  if (digits.empty() || std::isspace(static_cast<unsigned char>(digits.front())) ||
      end != digits.c_str() + digits.size()) {
    throw std::runtime_error("not a number: " + digits);
  }
  return value;
}

std::string toCodePoints(std::string_view text) {
  std::ostringstream out;
  out << std::hex << std::uppercase;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint32_t c = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t k = 1; k < length && i + k < text.size(); ++k) {
      c = (c << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
    }
    if (i > 0) out << ' ';
    out.width(4);
    out.fill('0');
    out << c;
    i += length;
  }
  return out.str();
}

}  // namespace vellora::golden
