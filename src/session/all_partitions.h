#pragma once

#include "base/session_values.h"
#include "jobs/job_findings.h"
#include "platform/files.h"
#include "platform/trap.h"
#include "session/business_rules.h"
#include "session/old_statistics.h"
#include "session/session_frame.h"

namespace qvrcom::session {

// Retrieves and resets the statistics of all partitions of the current site in one job, in the older form
// whatever the device's firmware. Each CSV is entered in the result's `partition_files`; the last one is also
// `StatsResultFile`. `missing` names every partition that was not fetched, not reset or not decoded.
class AllPartitions {
 public:
  AllPartitions(const BusinessRulesParts& parts, SessionFrame& frame)
      : session_(parts.session),
        files_(parts.files),
        frame_(frame),
        rules_(frame.rules()),
        statistics_(parts, frame),
        trap_(parts.ui) {}

  // Script, index line, session and outcome, trapped under this name.
  void ReceiveResetStat_NewQVR();

  // The outcome of its job.
  void process_outcome();

 private:
  void write();
  class Shortcomings;
  Remainder save_statistics();
  void save_partition(int number, const jobs::AccountFindings& found, Shortcomings& shortcomings);

  base::Session& session_;
  platform::Files& files_;
  SessionFrame& frame_;
  BusinessRules& rules_;
  OldStatistics statistics_;
  platform::Trap trap_;
};

}  // namespace qvrcom::session
