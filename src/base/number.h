#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qvrcom::base {

// A text as an integer, by the one rule of the suite: blanks trimmed, an optional sign, digits, an optional
// fraction that rounds to the nearest integer, halves to the even one.
// Fault "Type mismatch" when the text is not such a number, "Overflow" when it is out of range.
std::int16_t to_int16(std::string_view text);
std::int32_t to_int32(std::string_view text);

// Any decimal text (optional sign, digits, optional fraction and exponent), blanks around it allowed; nothing
// when it is none.
std::optional<double> parse_number(std::string_view text);

}  // namespace qvrcom::base
