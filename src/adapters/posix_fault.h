#pragma once

#include <cerrno>
#include <string>

namespace qvrcom::adapters {

// Throws the Fault of a failed system call: `what` could not be done with the file, and what can be done
// about it.
[[noreturn]] void fail(const char* what, const std::string& native, int code = errno);

}  // namespace qvrcom::adapters
