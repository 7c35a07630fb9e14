#pragma once

#include <optional>
#include <string>
#include <vector>

#include "environment/files_and_folders.h"
#include "platform/database.h"
#include "platform/files.h"
#include "platform/machine.h"

namespace qvrcom::environment {

// The folders of a machine that is being set up, as suite paths without a backslash at their end.
struct MachineFolders {
  std::string application_data;  // machine-wide, identifier 35
  std::string documents;         // machine-wide, identifier 46
  std::string application;       // where the programs lie
};

// Makes a machine ready for the suite. Doing it twice is harmless: what is there stays.
class SetUp {
 public:
  SetUp(const platform::Machine& machine, platform::MachineSetup& setup, platform::Files& files,
        platform::DatabaseEngine& engine)
      : machine_(machine), setup_(setup), files_(files), engine_(engine), folders_(machine, files) {}

  // One line per thing done; empty when everything was there. Fault when something cannot be made. Several at
  // once take their turns.
  std::vector<std::string> run(const MachineFolders& machine_folders);

 private:
  void configure(const MachineFolders& machine_folders);
  void set_machine_folder(std::int32_t identifier, const char* value_name, const std::string& path);
  void make_folders();
  void make_folder_chain(const std::string& path);
  void make_database();
  void seed(platform::Database& database);

  const platform::Machine& machine_;
  platform::MachineSetup& setup_;
  platform::Files& files_;
  platform::DatabaseEngine& engine_;
  FilesAndFolders folders_;
  std::vector<std::string> done_;
};

// What keeps the suite from running on a machine.
struct Lack {
  std::string text;          // what is missing or cannot be used, why, and what to do
  bool can_be_made = false;  // nothing lies in its place
};

// Nothing when the machine is set up. To be asked before any folder of the library.
std::optional<Lack> missing_set_up(const platform::Machine& machine, const platform::Files& files);

// The text without a look at the database, for programs that leave it to the opening to say what is wrong.
std::optional<std::string> missing_folders(const platform::Machine& machine, const platform::Files& files);

// Gives every site without a statistics settings row such a row. Returns how many were added.
std::size_t add_missing_statistics_settings(platform::Database& database);

}  // namespace qvrcom::environment
