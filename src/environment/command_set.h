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

// One connection and a catalogue of commands, run by name.
class CommandSet {
 public:
  // Runs a command with one argument per parameter, in the order of its parameter list. Opens the database
  // on first use. Fault when there is no such command, when an argument is missing or superfluous, and when
  // the database fails.
  base::Rows run(std::string_view command, std::span<const base::Field> arguments = {});
  base::Rows run(std::string_view command, std::initializer_list<base::Field> arguments);

 protected:
  CommandSet(platform::DatabaseEngine& engine, const FilesAndFolders& folders,
             const std::vector<Command>& commands);
  ~CommandSet() = default;

 private:
  const Command& find(std::string_view name) const;

  DatabaseConnection connection_;
  const std::vector<Command>& commands_;
};

// The command set of the statistics control.
class DataBase : public CommandSet {
 public:
  DataBase(platform::DatabaseEngine& engine, const FilesAndFolders& folders)
      : CommandSet(engine, folders, control_commands()) {}
};

// The command set of the business rules.
class DBase : public CommandSet {
 public:
  DBase(platform::DatabaseEngine& engine, const FilesAndFolders& folders)
      : CommandSet(engine, folders, rules_commands()) {}
};

}  // namespace qvrcom::environment
