#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

// Files that the user named on the command line, by native path, and streams that stand for them.
namespace qvrcom::cli {

// The whole file, at most platform::Files::kReadLimit bytes. A pipe is read to its end, and its writer may
// come some seconds later. Fault when it cannot be read, for a pipe that nobody writes to or whose writer
// falls silent for a minute, and for devices, which may have no end.
std::string read_local_file(const std::string& path);

// The first line without its end, cut after `limit` bytes; what follows is left unread. As read_local_file().
std::string read_first_line(const std::string& path, std::size_t limit);

// The same of a stream. A stream that is closed is empty.
std::string read_all(std::istream& in);
std::string read_line(std::istream& in, std::size_t limit);

// When the descriptor is open on a plain file, that is readable by its owner alone from here on. Fault when
// it cannot be made so.
void keep_to_owner(int descriptor);

}  // namespace qvrcom::cli
