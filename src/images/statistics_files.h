#pragma once

#include <string>

#include "environment/command_set.h"
#include "environment/files_and_folders.h"
#include "platform/files.h"
#include "platform/trap.h"

namespace qvrcom::images {

// Where the statistics CSV goes that the user sees.
class StatisticsFiles {
 public:
  StatisticsFiles(const environment::FilesAndFolders& folders, platform::Files& files,
                  platform::UserInterface& ui)
      : folders_(folders), files_(files), trap_(ui, platform::kImagesTrap) {}

  // Full name of the CSV to write, from the site's statistics settings; "" when the site has none.
  // `user_key` is the device's key in the site book.
  std::string Get_Stats_FileName(const std::string& user_key, environment::DBase& database);

  // `file_name` ends in four characters of extension. The name with the next number: one more than the
  // highest that the folder holds, letter case ignored. `folder` ends in a backslash.
  std::string Next_AutoIncrement_FileName(const std::string& folder, const std::string& file_name);

 private:
  const environment::FilesAndFolders& folders_;
  platform::Files& files_;
  platform::Trap trap_;
};

}  // namespace qvrcom::images
