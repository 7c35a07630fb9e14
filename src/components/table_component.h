#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/components.h"

namespace qvrcom::components {

// One operation of a component: its name, how many arguments it takes, what it does with them.
struct Operation {
  std::string name;
  std::size_t arguments = 0;
  std::function<std::optional<std::string>(std::span<const std::string>)> run;
};

// A component whose operations are rows of a table.
class TableComponent : public platform::Component {
 public:
  TableComponent(std::string name, std::vector<Operation> operations)
      : name_(std::move(name)), operations_(std::move(operations)) {}

  // Fault when there is no such operation, or the number of arguments is another one.
  std::optional<std::string> call(std::string_view operation,
                                  std::span<const std::string> arguments) override;

 private:
  std::string name_;
  std::vector<Operation> operations_;
};

}  // namespace qvrcom::components
