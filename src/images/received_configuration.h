#pragma once

#include <string>

#include "base/session_values.h"
#include "platform/components.h"
#include "platform/trap.h"
#include "platform/user_interface.h"
#include "platform/xml_rows.h"

namespace qvrcom::images {

struct ReceivedConfigurationParts {
  const base::SiteValues& site;
  const base::RunValues& run;
  base::ReceivedValues& received;
  platform::Components& components;
  const platform::XmlRows& xml_rows;
  platform::UserInterface& ui;
};

// Has the newest image components decode fetched configuration images into the database:
//   QVRBIN7_2.Sys   DecodeSystemImage (selector, file)
//   QVRBIN7_2.Part  DecodePartitionImage (selector, partition, session key, file)
// Both answer "OK" or a message, which is shown as it stands; a null answer as an empty box. The selector is
// SessionConfigID, the session key SiteID.
class ReceivedConfiguration {
 public:
  explicit ReceivedConfiguration(const ReceivedConfigurationParts& parts)
      : parts_(parts), trap_(parts.ui, platform::kImagesTrap) {}

  // Tells the system image ("getdBaseSys.dat") from a partition's ("getdBaseP" + partition + ".dat") by the
  // file's name. A partition that the database does not have is ignored. One that was decoded is entered in
  // the list of received partitions at the index of the counter, with an empty element behind it. Every call
  // first cuts the list down to its first element, so earlier entries but that one read as empty.
  void Write_Database(const std::string& file_name);

  void Process_System_binary(const std::string& selector, const std::string& file_name);
  void Process_Partition_binary(const std::string& selector, const std::string& partition,
                                const std::string& file_name);

  // Whether the configuration has the partition.
  bool ExistPartID(const std::string& partition);

  // An empty list and a counter of 0: to be done before a job's downloads are decoded.
  void clear_received_partitions();

 private:
  ReceivedConfigurationParts parts_;
  platform::Trap trap_;
};

}  // namespace qvrcom::images
