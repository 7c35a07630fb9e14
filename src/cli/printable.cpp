#include "cli/printable.h"

#include <algorithm>

#include "base/text.h"

namespace qvrcom::cli {
namespace {

bool continues_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// Bytes of the well-formed character at the start of a text that is not empty, 0 when there is none.
std::size_t character_length(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && length < 4 && continues_character(text[length]))
    ++length;
  for (; length > 0; --length)
    if (base::is_utf8(text.substr(0, length))) break;
  return length;
}

bool is_plain(char byte) {
  return byte >= ' ' && byte < 0x7F;
}

bool is_control(std::string_view character) {
  if (character.size() == 1) return base::has_control_character(character);
  return character.size() == 2 && character[0] == '\xC2' && static_cast<unsigned char>(character[1]) < 0xA0;
}

void append_escaped(std::string& text, std::string_view bytes) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text += "\\x";
    text += kDigits[value >> 4U];
    text += kDigits[value & 0xFU];
  }
}

}  // namespace

std::string printable(std::string_view text) {
  if (std::all_of(text.begin(), text.end(), is_plain)) return std::string(text);
  std::string safe;
  safe.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = character_length(text);
    const std::string_view piece = text.substr(0, length == 0 ? 1 : length);
    if (length == 0 || is_control(piece)) {
      append_escaped(safe, piece);
    } else {
      safe += piece;
    }
    text.remove_prefix(piece.size());
  }
  return safe;
}

std::size_t width_of(std::string_view text) {
  std::size_t width = 0;
  for (const char byte : text)
    width += continues_character(byte) ? 0U : 1U;
  return width;
}

std::string_view clipped(std::string_view text, std::size_t width) {
  std::size_t end = 0;
  for (; end < text.size(); ++end) {
    if (continues_character(text[end])) continue;
    if (width == 0) break;
    --width;
  }
  return text.substr(0, end);
}

}  // namespace qvrcom::cli
