#include "adapters/paths.h"

#include <algorithm>

namespace qvrcom::adapters {

std::string native_path(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

std::string suite_path(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace qvrcom::adapters
