#pragma once

#include <string>
#include <string_view>

// Files that the user named on the command line, by native path.
namespace qvrcom::cli {

// The whole file. Fault when it cannot be read.
std::string read_local_file(const std::string& path);

// The file holds `text` afterwards and is readable by its owner alone; when that cannot be, it stays what it
// was and a Fault says why.
void write_private_file(const std::string& path, std::string_view text);

}  // namespace qvrcom::cli
