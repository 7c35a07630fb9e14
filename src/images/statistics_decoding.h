#pragma once

#include <string>

#include "base/session_values.h"
#include "platform/components.h"
#include "platform/trap.h"
#include "platform/user_interface.h"

namespace qvrcom::images {

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

}  // namespace qvrcom::images
