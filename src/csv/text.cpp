#include "csv/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "base/text.h"

namespace qvrcom::csv {
namespace {

// 0x80 to 0x9F; the rest of Windows-1252 is the character of the same number.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void append_utf8(std::string& text, char16_t character) {
  const auto code = static_cast<unsigned>(character);
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | (code >> 6U));
    text += static_cast<char>(0x80U | (code & 0x3FU));
  } else {
    text += static_cast<char>(0xE0U | (code >> 12U));
    text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
    text += static_cast<char>(0x80U | (code & 0x3FU));
  }
}

char ascii_lower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
}

// Capitals of the characters that UTF-8 writes in two bytes, as ranges: the small letter is `distance` on.
// Where capitals and small letters take turns, only every second character counts, from `first` on.
struct CaseRange {
  char16_t first, last;
  char16_t distance;
  bool alternating;
};
constexpr CaseRange kCapitals[] = {
    {0x00C0, 0x00D6, 32, false}, {0x00D8, 0x00DE, 32, false}, {0x0100, 0x012E, 1, true},
    {0x0132, 0x0136, 1, true},   {0x0139, 0x0147, 1, true},   {0x014A, 0x0176, 1, true},
    {0x0179, 0x017D, 1, true},   {0x0386, 0x0386, 38, false}, {0x0388, 0x038A, 37, false},
    {0x038C, 0x038C, 64, false}, {0x038E, 0x038F, 63, false}, {0x0391, 0x03A1, 32, false},
    {0x03A3, 0x03AB, 32, false}, {0x0400, 0x040F, 80, false}, {0x0410, 0x042F, 32, false},
    {0x0460, 0x0480, 1, true},   {0x048A, 0x04BE, 1, true},   {0x04D0, 0x052E, 1, true}};

char16_t small_letter(char16_t character) {
  if (character == 0x0178) return 0x00FF;
  const auto* range = std::find_if(std::begin(kCapitals), std::end(kCapitals),
                                   [&](const CaseRange& each) { return character <= each.last; });
  if (range == std::end(kCapitals) || character < range->first) return character;
  if (range->alternating && (character - range->first) % 2 != 0) return character;
  return static_cast<char16_t>(character + range->distance);
}

bool is_continuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string to_utf8(std::string_view bytes) {
  if (is_ascii(bytes) || base::is_utf8(bytes)) return std::string(bytes);
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    append_utf8(text, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80U] : char16_t{byte});
  }
  return text;
}

std::string fold_case(std::string_view utf8) {
  std::string folded;
  folded.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if ((lead & 0xE0U) == 0xC0U && i + 1 < utf8.size() && is_continuation(utf8[i + 1])) {
      const auto next = static_cast<unsigned char>(utf8[++i]);
      append_utf8(folded, small_letter(static_cast<char16_t>(((lead & 0x1FU) << 6U) | (next & 0x3FU))));
    } else {
      folded += ascii_lower(utf8[i]);
    }
  }
  return folded;
}

bool contains_ascii(std::string_view text, std::string_view folded) {
  const auto same = [](char left, char right) { return ascii_lower(left) == right; };
  return std::search(text.begin(), text.end(), folded.begin(), folded.end(), same) != text.end() ||
         folded.empty();
}

std::optional<double> to_number(std::string_view text) {
  text = base::trim(text);
  const bool plus = text.starts_with('+');  // which from_chars does not know
  if (plus) text.remove_prefix(1);
  const std::string_view digits = !plus && text.starts_with('-') ? text.substr(1) : text;
  if (digits.empty() || !(digits.front() == '.' || (digits.front() >= '0' && digits.front() <= '9')))
    return std::nullopt;
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

}  // namespace qvrcom::csv
