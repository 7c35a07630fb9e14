#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qvrcom::platform {

// A component of the suite, created by name and driven by texts: its operations take texts and answer with
// one text, or with a null.
class Component {
 public:
  virtual ~Component() = default;

  // Fault when the component has no such operation or cannot answer.
  virtual std::optional<std::string> call(std::string_view operation,
                                          std::span<const std::string> arguments) = 0;
};

class Components {
 public:
  virtual ~Components() = default;

  // A new component; Fault "Component cannot be created" when nothing is registered under the name.
  virtual std::unique_ptr<Component> create(std::string_view name) = 0;
};

}  // namespace qvrcom::platform
