#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "base/session_values.h"
#include "platform/components.h"
#include "platform/trap.h"
#include "platform/user_interface.h"
#include "platform/xml_rows.h"

namespace qvrcom::images {

inline constexpr const char* kSystemDecoder = "QVRBIN7_2.Sys";
inline constexpr const char* kPartitionDecoder = "QVRBIN7_2.Part";
inline constexpr const char* kStatisticsWriter = "QVRStats.Stats";

// What an image component answers when it has done what it was asked to.
inline constexpr std::string_view kDone = "OK";

// Asks a component; a null answer is the empty text.
std::string answer_of(platform::Component& component, std::string_view operation,
                      std::initializer_list<std::string> arguments);

// A failed component's answer as it stands, in a box without icon and title. `file_name` is what it was to
// decode.
void show_answer(platform::UserInterface& ui, const std::string& answer, const std::string& component,
                 const std::string& file_name);

// Which of a partition's two files could be decoded.
struct StatisticsAnswers {
  bool lines = false;
  bool nodes = false;
};

// Turns the statistics files of old firmware into the CSV that the user sees, by two components:
//   QVRBIN7_2.Part  DecodeLineStats, DecodeNodeStats (selector, partition, file): "OK" or a message
//   QVRStats.Stats  WriteStatsCsv (selector, partition): "OK" and the CSV's full name, or a message
// A message is shown as it stands, a null answer as an empty box. Events run once after a component is made.
class StatisticsDecoding {
 public:
  StatisticsDecoding(base::RunValues& run, platform::Components& components, platform::UserInterface& ui)
      : run_(run), components_(components), ui_(ui), trap_(ui, platform::kImagesTrap) {}

  // Decodes both files; when both fail, the message about the line statistics alone is shown.
  StatisticsAnswers Process_PartStats_binary(const std::string& selector, const std::string& partition,
                                             const std::string& line_stat_file,
                                             const std::string& node_stat_file);

  // Sets StatsResultFile to the CSV that was written; leaves it as it was after a failure.
  void Process_Write_CSV(const std::string& selector, const std::string& partition);

 private:
  base::RunValues& run_;
  platform::Components& components_;
  platform::UserInterface& ui_;
  platform::Trap trap_;
};

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
