#pragma once

#include <string>

namespace qvrcom::adapters {

// Between suite paths (backslashes) and the operating system's. On a system that parts names with a slash
// every backslash is one and the reverse.
std::string native_path(std::string suite_path);
std::string suite_path(std::string native_path);

}  // namespace qvrcom::adapters
