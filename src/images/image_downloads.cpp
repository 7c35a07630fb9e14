#include "images/image_downloads.h"

#include "base/text.h"

namespace qvrcom::images {
namespace {

// Files whose real size is not known before they arrive.
std::string fetch(const char* remote_name, const std::string& local_name) {
  return "FTPGET;REMOTEFILE=" + std::string(remote_name) + ";LOCALFILE=" + local_name + ";SIZE=20000;";
}

std::string account(const std::string& partition) {
  return "FTPACCT;part" + std::string(base::trim(partition)) + ";" + std::string(base::kCrLf);
}

}  // namespace

void ImageDownloads::Write_Script_System(const std::string& image_file) {
  writer_.Write_Script(fetch("dbase", image_file));
}

void ImageDownloads::Write_Script_Partition(const std::string& partition, const std::string& image_file) {
  writer_.Write_Script(account(partition) + fetch("dbase", image_file));
}

void ImageDownloads::Write_Script_Stats(const std::string& partition, const std::string& line_stat_file,
                                        const std::string& node_stat_file, const std::string& dbase_file) {
  const std::string line_end(base::kCrLf);
  writer_.Write_Script(account(partition) + fetch("dbase", dbase_file) + line_end +
                       fetch("linestat", line_stat_file) + line_end + fetch("nodestat", node_stat_file));
}

}  // namespace qvrcom::images
