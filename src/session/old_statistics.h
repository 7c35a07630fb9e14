#pragma once

#include <string>
#include <vector>

#include "base/session_values.h"
#include "protocol/script_grammar.h"
#include "session/business_rules.h"
#include "session/session_frame.h"

namespace qvrcom::session {

// What clears a partition's statistics on the device, in either form.
void add_clearing(std::vector<protocol::ScriptCommand>& commands);

// The older form of statistics: two binary files a partition, which are fetched together with the
// configuration images that explain them, and decoded here. All files lie in the job's folder.
class OldStatistics {
 public:
  OldStatistics(const BusinessRulesParts& parts, SessionFrame& frame)
      : parts_(parts), session_(parts.session), frame_(frame), rules_(frame.rules()) {}

  std::string line_file(const std::string& partition) const;
  std::string node_file(const std::string& partition) const;

  // Script lines: the system image, and one partition's image and statistics, which are then cleared on the
  // device when `clears`.
  void write_system();
  void write_partition(const std::string& partition, bool clears);

  // Shows the step, turns to configuration "1" and decodes the images that the completed job fetched.
  void take_images();

  // Whether the image of this partition was among them, compared as numbers.
  bool has_delivered(const std::string& partition) const;

  // Decodes the two files and writes the CSV of what could be decoded. Answers with what is missing in it, as
  // the end of a sentence about the partition ("has no line statistics"), or "". Without a CSV
  // StatsResultFile is "".
  std::string write_csv(const std::string& partition, const std::string& line_stat_file,
                        const std::string& node_stat_file);

  // Keeps the reason why there is no result for whoever asked, and in the job's log.
  void miss(const std::string& reason);

 private:
  void note_next_file(const std::string& partition);
  std::string in_folder(const char* begin, const std::string& partition) const;

  BusinessRulesParts parts_;
  base::Session& session_;
  SessionFrame& frame_;
  BusinessRules& rules_;
};

}  // namespace qvrcom::session
