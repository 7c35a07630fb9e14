#pragma once

#include "doubles/memory_database.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "doubles/recording_user_interface.h"
#include "environment/command_set.h"
#include "environment/files_and_folders.h"

namespace qvrcom::doubles {

// The suite's folders and database in memory.
struct MemoryData {
  MemoryMachine machine;
  MemoryFiles files;
  RecordingUserInterface ui;
  MemoryDatabase engine;
  environment::FilesAndFolders folders{machine, files};
  environment::DatabaseConnection connection{engine, folders};
  environment::DBase dbase{connection};
};

}  // namespace qvrcom::doubles
