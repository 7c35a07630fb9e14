#include "base/text.h"

#include <algorithm>
#include <array>

namespace qvrcom::base {
namespace {

constexpr char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string mapped(std::string_view text, char (*map)(char)) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), map);
  return result;
}

struct Utf8Lead {
  unsigned char low, high;                // range of the first byte
  unsigned char second_low, second_high;  // range of the second byte: no overlong forms, no surrogates
  std::size_t length;
};

constexpr std::array<Utf8Lead, 8> kUtf8Leads{{{0xC2, 0xDF, 0x80, 0xBF, 2},
                                              {0xE0, 0xE0, 0xA0, 0xBF, 3},
                                              {0xE1, 0xEC, 0x80, 0xBF, 3},
                                              {0xED, 0xED, 0x80, 0x9F, 3},
                                              {0xEE, 0xEF, 0x80, 0xBF, 3},
                                              {0xF0, 0xF0, 0x90, 0xBF, 4},
                                              {0xF1, 0xF3, 0x80, 0xBF, 4},
                                              {0xF4, 0xF4, 0x80, 0x8F, 4}}};

// Length of the sequence at the start of `text`, 0 when it is malformed or cut off.
std::size_t utf8_sequence(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return 1;
  for (const Utf8Lead& lead : kUtf8Leads) {
    if (byte(0) < lead.low || byte(0) > lead.high) continue;
    if (text.size() < lead.length || byte(1) < lead.second_low || byte(1) > lead.second_high) return 0;
    for (std::size_t i = 2; i < lead.length; ++i) {
      if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    return lead.length;
  }
  return 0;
}

}  // namespace

std::string_view trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string to_upper(std::string_view text) {
  return mapped(text, upper);
}
std::string to_lower(std::string_view text) {
  return mapped(text, lower);
}

bool equals_ignoring_case(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return upper(a) == upper(b); });
}

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  for (;;) {
    const auto end = text.find(separator);
    pieces.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + separator.size());
  }
}

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines = split(text, "\n");
  if (lines.back().empty()) lines.pop_back();
  for (std::string_view& line : lines) {
    if (line.ends_with('\r')) line.remove_suffix(1);
  }
  return lines;
}

std::string with_line_ends(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text.append(line).append(kCrLf);
  return text;
}

bool has_control_character(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
  });
}

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = utf8_sequence(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace qvrcom::base
