#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

#include "environment/files_and_folders.h"
#include "platform/files.h"

namespace qvrcom::desktop {

struct SameLog {
  std::string path;  // suite path
  QString name;
  std::uint64_t length = 0;  // bytes
  QDateTime modified;
};

// The SAME logs that were filed, the newest first. Without their folder there are none; Fault when it cannot
// be read.
std::vector<SameLog> filed_same_logs(const platform::Files& files,
                                     const environment::FilesAndFolders& folders);

}  // namespace qvrcom::desktop
