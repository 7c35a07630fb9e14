#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/rows.h"
#include "environment/command_catalogue.h"
#include "environment/files_and_folders.h"
#include "platform/database.h"

namespace qvrcom::environment {

// The suite's database, one for a whole program. It is open only while a statement, a transaction or a Hold
// runs, so that whatever the user does next works with the file that lies there then: a copy may be put back
// over it at any time. Opening costs less than a millisecond, writing several.
class DatabaseConnection : private platform::Database {
 public:
  DatabaseConnection(platform::DatabaseEngine& engine, const FilesAndFolders& folders)
      : engine_(engine), folders_(folders) {}

  // Each statement and each transaction opens the file. Fault when that cannot be done, or when its schema is
  // not the one that this program works with. Inside a transaction every user of this object is part of it.
  platform::Database& database() { return *this; }

  // For many statements in a row: the file stays open for as long as one of these lives. Nothing is shown to
  // the user meanwhile.
  class Hold {
   public:
    explicit Hold(DatabaseConnection& connection);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    DatabaseConnection& connection_;
  };

 private:
  base::Rows run(const std::string& sql, std::span<const platform::NamedValue> values) override;
  void transaction(const std::function<void()>& work) override;

  platform::DatabaseEngine& engine_;
  const FilesAndFolders& folders_;
  int holds_ = 0;
  std::unique_ptr<platform::Database> open_;  // while there are holds
};

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
