#include "components/component_registry.h"

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

void ComponentRegistry::add(const std::string& name, Factory factory) {
  factories_.insert_or_assign(name, std::move(factory));
}

std::unique_ptr<platform::Component> ComponentRegistry::create(std::string_view name) {
  const auto found = factories_.find(name);
  if (found == factories_.end())
    throw base::Fault("Component cannot be created",
                      "No component \"" + std::string(name) + "\" is registered.");
  return found->second();
}

}  // namespace qvrcom::components
