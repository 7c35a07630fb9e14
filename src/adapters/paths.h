#pragma once

#include <string>

namespace qvrcom::adapters {

// Between suite paths (backslashes) and the operating system's. On a system that parts names with a slash
// every backslash is one and the reverse; a backslash in a file's name is marked, so that every native path
// comes back as it was.
std::string native_path(const std::string& suite_path);
std::string suite_path(const std::string& native_path);

}  // namespace qvrcom::adapters
