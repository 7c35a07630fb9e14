#pragma once

#include <optional>
#include <string>
#include <string_view>

// What a cell's bytes mean.
namespace qvrcom::csv {

// UTF-8 stays as it is. A cell that is not well-formed UTF-8 is read as Windows-1252, in which every byte is
// a character (the five unassigned ones become control characters), so that no byte is ever lost.
std::string to_utf8(std::string_view bytes);

// For comparing without regard to case: small letters for the Latin, Greek and Cyrillic capitals that have
// one of the same kind; everything else unchanged. Bytes that are not UTF-8 pass through.
std::string fold_case(std::string_view utf8);

// Whether `text` contains `folded` (a result of fold_case), ASCII letters compared without regard to case.
bool contains_ascii(std::string_view text, std::string_view folded);

bool is_ascii(std::string_view text);

// A decimal number: blanks around it, sign, digits, ".", exponent. Never infinite, never not-a-number.
std::optional<double> to_number(std::string_view text);

}  // namespace qvrcom::csv
