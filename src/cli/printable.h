#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qvrcom::cli {

// A foreign text as one line that is safe on a terminal: control characters (the 8-bit ones too) and bytes
// that are no UTF-8 stand as "\x1B".
std::string printable(std::string_view text);

// How many characters a printable text has; each is taken to be one column wide.
std::size_t width_of(std::string_view text);

// The first `width` characters at most.
std::string_view clipped(std::string_view text, std::size_t width);

}  // namespace qvrcom::cli
