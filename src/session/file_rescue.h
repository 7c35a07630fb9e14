#pragma once

#include <string>
#include <vector>

#include "jobs/job_findings.h"
#include "session/business_rules.h"

namespace qvrcom::session {

// Which of a job's files are meant.
enum class RescueWhat {
  kDeleted,     // of a job that has told its device to delete something
  kAsTheyCame,  // likewise, without a CSV: what could be decoded has been decoded
  kEverything,  // whatever the job has fetched
};

// Copies the files that a job has fetched into its folder below "Rescued" and says in a box where they are:
// each as it came, and beside statistics a CSV where they can be decoded, from the site that the session
// works on. Of a job whose script cannot be read, which may have deleted anything, every file is copied.
// A file that an
// earlier rescue of the job has left keeps its bytes: other ones go beside it, as "NAME (2).EXT".
// `accounts` are those whose files are meant, all when it is empty. The job's folder stays as it is. False
// when there was nothing to copy. Fault when a file cannot be written.
bool bring_to_safety(const BusinessRulesParts& parts, const std::string& job_name, RescueWhat what,
                     const std::vector<std::string>& accounts = {});

}  // namespace qvrcom::session
