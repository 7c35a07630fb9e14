#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/fault.h"
#include "platform/components.h"

namespace qvrcom::components {

// Runs an operation that answers with "OK" or a message for the user: a fault becomes such a message, which
// begins with what the operation was about ("linestatP3.dat").
inline std::optional<std::string> answer(const std::string& about,
                                         const std::function<std::string()>& operation) {
  std::string text;
  const auto fault = base::fault_of([&] { text = operation(); });
  if (!fault) return text;
  return about + ": " + fault->description() + (fault->detail().empty() ? "" : ". " + fault->detail());
}

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
