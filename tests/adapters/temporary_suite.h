#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "adapters/database_qt.h"
#include "adapters/files_posix.h"
#include "adapters/posix_fault.h"
#include "adapters/qt_application.h"
#include "doubles/settable_machine.h"
#include "environment/command_set.h"
#include "environment/set_up.h"

namespace qvrcom::adapters {

// The folder goes with the object, and whatever still stands in it.
struct TemporaryFolder {
  TemporaryFolder() {
    std::string pattern = "/tmp/qvrcom-suite-XXXXXX";
    path = mkdtemp(pattern.data());
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }
  std::string path;
};

// A machine that is set up below a folder of its own, with a real database file.
struct TemporarySuite {
  TemporarySuite() { need_application(); }

  std::vector<std::string> set_up() {
    const std::string root = suite_path(folder.path);
    return environment::SetUp(machine, machine, files, engine)
        .run({root + "\\data", root + "\\docs", machine.program_folder()});
  }

  std::string database_path() const { return folder.path + "/data/Corbelin/QVRCOM+/Database/NewDB.mdb"; }

  void write_database_file(const std::string& bytes) const {
    std::ofstream(database_path(), std::ios::binary | std::ios::trunc) << bytes;
  }

  base::Rows query(const std::string& sql) { return connection.database().run(sql); }
  std::string value(const std::string& sql) {
    const base::Rows rows = query(sql);
    return rows[0].text(rows.columns()[0], "NULL");
  }

  TemporaryFolder folder;
  FilesPosix files;
  doubles::SettableMachine machine;
  QtDatabaseEngine engine{files};
  environment::FilesAndFolders folders{machine, files};
  environment::DatabaseConnection connection{engine, folders};
};

}  // namespace qvrcom::adapters
