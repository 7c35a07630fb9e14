#include "environment/command_set.h"

#include <algorithm>

#include "base/fault.h"
#include "environment/schema.h"

namespace qvrcom::environment {

DatabaseConnection::Hold::Hold(DatabaseConnection& connection) : connection_(connection) {
  if (connection.holds_ == 0) {
    auto opened = connection.engine_.open(connection.folders_.GetConnectionString());
    require_schema(*opened);
    connection.open_ = std::move(opened);
  }
  ++connection.holds_;
}

DatabaseConnection::Hold::~Hold() {
  if (--connection_.holds_ == 0) connection_.open_.reset();
}

base::Rows DatabaseConnection::run(const std::string& sql, std::span<const platform::NamedValue> values) {
  const Hold hold(*this);
  return open_->run(sql, values);
}

void DatabaseConnection::transaction(const std::function<void()>& work) {
  const Hold hold(*this);
  open_->transaction(work);
}

const Command& CommandSet::find(std::string_view name) const {
  const auto found = std::find_if(commands_.begin(), commands_.end(),
                                  [&](const Command& command) { return command.name == name; });
  if (found == commands_.end())
    throw base::Fault("Item not found in this collection",
                      "No database command \"" + std::string(name) + "\".");
  return *found;
}

base::Rows CommandSet::run(std::string_view command, std::span<const base::Field> arguments) {
  const Command& found = find(command);
  if (arguments.size() != found.parameters.size()) {
    throw base::Fault("Wrong number of arguments", "The database command \"" + found.name + "\" takes " +
                                                       std::to_string(found.parameters.size()) +
                                                       " arguments, not " + std::to_string(arguments.size()) +
                                                       ".");
  }
  std::vector<platform::NamedValue> values;
  for (std::size_t i = 0; i < arguments.size(); ++i)
    values.push_back({found.parameters[i], arguments[i]});
  return connection_.database().run(with_placeholders(found), values);
}

base::Rows CommandSet::run(std::string_view command, std::initializer_list<base::Field> arguments) {
  return run(command, std::span<const base::Field>(arguments.begin(), arguments.size()));
}

}  // namespace qvrcom::environment
