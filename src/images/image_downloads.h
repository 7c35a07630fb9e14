#pragma once

#include <string>

#include "jobs/script_writer.h"

namespace qvrcom::images {

// Script lines that fetch images and statistics of a device. Local names are full suite paths. What cannot be
// written is reported by the script writer.
class ImageDownloads {
 public:
  explicit ImageDownloads(jobs::ScriptWriter& writer) : writer_(writer) {}

  // The system image: no account line stands before it.
  void Write_Script_System(const std::string& image_file);

  // The image of one partition, under its account.
  void Write_Script_Partition(const std::string& partition, const std::string& image_file);

  // The image and the two statistics files of one partition, under its account.
  void Write_Script_Stats(const std::string& partition, const std::string& line_stat_file,
                          const std::string& node_stat_file, const std::string& dbase_file);

 private:
  jobs::ScriptWriter& writer_;
};

}  // namespace qvrcom::images
