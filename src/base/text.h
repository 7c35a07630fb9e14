#pragma once

#include <string>
#include <string_view>
#include <vector>

// Small operations on byte texts. Case folding is ASCII: the machinery's files are compared byte by byte
// on every PC, whatever its language.
namespace qvrcom::base {

inline constexpr std::string_view kCrLf = "\r\n";

// Without leading and trailing blanks (the character 0x20 alone).
std::string_view trim(std::string_view text);

std::string to_upper(std::string_view text);
std::string to_lower(std::string_view text);
bool equals_ignoring_case(std::string_view left, std::string_view right);

// Every piece between separators, empty ones included; an empty text is one empty piece.
std::vector<std::string_view> split(std::string_view text, std::string_view separator);

// The lines of a text file: split at LF with one trailing CR dropped. The last line counts only when it
// is not empty, so a file that ends with a line end has no extra line.
std::vector<std::string_view> lines_of(std::string_view text);

// Each line followed by CR LF.
std::string with_line_ends(const std::vector<std::string>& lines);

// True for the characters 0x00 to 0x1F and 0x7F.
bool has_control_character(std::string_view text);

// True when every byte belongs to a well-formed UTF-8 sequence.
bool is_utf8(std::string_view text);

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// Of ASCII.
constexpr bool is_letter_or_digit(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || is_digit(c);
}

}  // namespace qvrcom::base
