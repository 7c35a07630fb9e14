#include "images/image_downloads.h"

#include "protocol/device_files.h"
#include "protocol/script_grammar.h"

namespace qvrcom::images {

using protocol::get_file;
using protocol::select_partition;

void ImageDownloads::Write_Script_System(const std::string& image_file) {
  writer_.Write_Script(protocol::commands_text({get_file("dbase", image_file)}));
}

void ImageDownloads::Write_Script_Partition(const std::string& partition, const std::string& image_file) {
  writer_.Write_Script(protocol::commands_text({select_partition(partition), get_file("dbase", image_file)}));
}

void ImageDownloads::Write_Script_Stats(const std::string& partition, const std::string& line_stat_file,
                                        const std::string& node_stat_file, const std::string& dbase_file) {
  writer_.Write_Script(protocol::commands_text({select_partition(partition), get_file("dbase", dbase_file),
                                                get_file(protocol::kLineStatistics, line_stat_file),
                                                get_file(protocol::kNodeStatistics, node_stat_file)}));
}

}  // namespace qvrcom::images
