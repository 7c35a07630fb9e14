#pragma once

#include <memory>

#include "environment/files_and_folders.h"
#include "platform/database.h"

namespace qvrcom::environment {

// The suite's database, opened when it is first asked for. A failed opening is tried again the next time.
class DatabaseConnection {
 public:
  DatabaseConnection(platform::DatabaseEngine& engine, const FilesAndFolders& folders)
      : engine_(engine), folders_(folders) {}

  // Fault when the file cannot be opened, or when its schema is not the one that this program works with.
  platform::Database& database();

 private:
  platform::DatabaseEngine& engine_;
  const FilesAndFolders& folders_;
  std::unique_ptr<platform::Database> database_;
};

}  // namespace qvrcom::environment
