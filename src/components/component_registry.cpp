#include "components/component_registry.h"

#include "base/fault.h"

namespace qvrcom::components {

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
