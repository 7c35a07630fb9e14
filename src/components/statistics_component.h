#pragma once

#include "components/component_registry.h"
#include "environment/command_set.h"
#include "environment/files_and_folders.h"
#include "platform/files.h"
#include "platform/user_interface.h"

namespace qvrcom::components {

// What the statistics writer works with.
struct StatisticsParts {
  environment::DatabaseConnection& connection;
  environment::DBase& dbase;
  const environment::FilesAndFolders& folders;
  platform::Files& files;
  platform::UserInterface& ui;
};

// Registers the statistics writer:
//   QVRStats.Stats   WriteStatsCsv(configuration, partition), WriteStatsCsvTo(configuration, partition, file)
// Both write what was decoded for the partition into a CSV, the first into one whose name the site's
// statistics settings give, the second into the file of this suite path, and answer "OK" and the suite path
// of the CSV, or a message for the user; then nothing has been written. docs/formats/statistics-csv.md
// describes the CSV.
void add_statistics_component(ComponentRegistry& registry, const StatisticsParts& parts);

}  // namespace qvrcom::components
