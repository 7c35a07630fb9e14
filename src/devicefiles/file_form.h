#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qvrcom::devicefiles {

// The version of every file form here; the byte behind the magic.
inline constexpr std::uint8_t kFileVersion = 1;

// No device file is longer; what is longer is refused before it is looked at.
inline constexpr std::size_t kLargestFile = std::size_t{1} << 20U;

struct FileForm {
  std::string_view magic;  // the first bytes of every file of the form
  std::string_view kind;   // in the user's words, "line statistics"
};

// Fault "Not a ... file of this suite" without the magic, "... file of another version" with another version.
void check_form(std::string_view bytes, const FileForm& form);

// Fault when the file is not exactly so long.
void check_length(std::string_view bytes, const FileForm& form, std::size_t length);

}  // namespace qvrcom::devicefiles
