#include "components/table_component.h"

#include "base/fault.h"

namespace qvrcom::components {

std::optional<std::string> TableComponent::call(std::string_view operation,
                                                std::span<const std::string> arguments) {
  for (const Operation& one : operations_) {
    if (one.name != operation) continue;
    if (one.arguments != arguments.size()) {
      throw base::Fault("Wrong number of arguments",
                        one.name + " of " + name_ + " takes " + std::to_string(one.arguments) + ".");
    }
    return one.run(arguments);
  }
  throw base::Fault("Object doesn't support this operation",
                    name_ + " has no operation \"" + std::string(operation) + "\".");
}

}  // namespace qvrcom::components
