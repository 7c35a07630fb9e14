#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvrcom::adapters {

// Whether a line of the control connection ends a reply: three digits and a blank. The lines of a longer
// reply that stand before its last one have a "-" there, or anything.
bool ends_reply(std::string_view line);

// The number of a reply "213 1234"; nothing when anything else stands behind the code.
std::optional<std::uint64_t> size_in(std::string_view reply);

// `text` with "***" for `secret` wherever it stands as a word of its own, in any letter case: with no letter,
// digit or byte above 0x7F that would carry it on beside it.
std::string masked(std::string text, std::string_view secret);

// A secret so short that masking it would spoil texts that do not mean it, and is not done.
bool too_short_to_mask(std::string_view secret);

}  // namespace qvrcom::adapters
