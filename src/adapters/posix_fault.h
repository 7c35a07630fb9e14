#pragma once

#include <cerrno>
#include <string>

namespace qvrcom::adapters {

// Throws the Fault of a failed system call: `what` could not be done with the file, and what can be done
// about it.
[[noreturn]] void fail(const char* what, const std::string& native, int code = errno);

// Between suite paths (backslashes) and the operating system's. On a system that parts names with a slash
// every backslash is one and the reverse; a backslash in a file's name is marked, so that every native path
// comes back as it was.
std::string native_path(const std::string& suite_path);
std::string suite_path(const std::string& native_path);

}  // namespace qvrcom::adapters
