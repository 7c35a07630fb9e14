#include "adapters/lock_fault.h"

#include "base/fault.h"

namespace qvrcom::adapters {

void fail_lock(const QLockFile& lock, const std::string& path) {
  const std::string what = "The lock file \"" + path + "\" cannot be written. ";
  if (lock.error() == QLockFile::PermissionError)
    throw base::Fault(base::kPermissionDenied, what + "Check the rights of its folder.");
  throw base::Fault(base::kDiskFull, what + "Free some space and try again.");
}

}  // namespace qvrcom::adapters
