#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/components.h"

namespace qvrcom::components {

// The components that can be created by name.
class ComponentRegistry : public platform::Components {
 public:
  using Factory = std::function<std::unique_ptr<platform::Component>()>;

  // A later component takes the place of an earlier one of the same name.
  void add(const std::string& name, Factory factory);

  std::unique_ptr<platform::Component> create(std::string_view name) override;

 private:
  std::map<std::string, Factory, std::less<>> factories_;
};

}  // namespace qvrcom::components
