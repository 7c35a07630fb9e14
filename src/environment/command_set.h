#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/rows.h"
#include "environment/command_catalogue.h"
#include "environment/database_connection.h"

namespace qvrcom::environment {

// A catalogue of commands, run by name on the program's connection.
class CommandSet {
 public:
  // Runs a command with one argument per parameter, in the order of its parameter list. Fault when there is
  // no such command, when an argument is missing or superfluous, and when the database fails.
  base::Rows run(std::string_view command, std::span<const base::Field> arguments = {});
  base::Rows run(std::string_view command, std::initializer_list<base::Field> arguments);

 protected:
  CommandSet(DatabaseConnection& connection, const std::vector<Command>& commands)
      : connection_(connection), commands_(commands) {}
  ~CommandSet() = default;

 private:
  const Command& find(std::string_view name) const;

  DatabaseConnection& connection_;
  const std::vector<Command>& commands_;
};

// The command set of the statistics control.
class DataBase : public CommandSet {
 public:
  explicit DataBase(DatabaseConnection& connection) : CommandSet(connection, control_commands()) {}
};

// The command set of the business rules.
class DBase : public CommandSet {
 public:
  explicit DBase(DatabaseConnection& connection) : CommandSet(connection, rules_commands()) {}
};

}  // namespace qvrcom::environment
