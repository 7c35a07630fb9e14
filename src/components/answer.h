#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/fault.h"

namespace qvrcom::components {

// Runs an operation that answers with "OK" or a message for the user: a fault becomes such a message, which
// begins with what the operation was about ("linestatP3.dat").
inline std::optional<std::string> answer(const std::string& about,
                                         const std::function<std::string()>& operation) {
  try {
    return operation();
  } catch (const base::Fault& fault) {
    return about + ": " + fault.description() + (fault.detail().empty() ? "" : ". " + fault.detail());
  }
}

}  // namespace qvrcom::components
