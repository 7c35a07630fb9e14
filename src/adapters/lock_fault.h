#pragma once

#include <QLockFile>
#include <string>

namespace qvrcom::adapters {

// Throws the Fault of a lock file that could not be written, although nobody holds it.
[[noreturn]] void fail_lock(const QLockFile& lock, const std::string& path);

}  // namespace qvrcom::adapters
