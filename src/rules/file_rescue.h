#pragma once

#include <string>
#include <vector>

#include "results/job_findings.h"
#include "rules/business_rules.h"

namespace qvrcom::rules {

// What was brought to safety.
struct Rescue {
  std::string folder;              // suite path with a backslash at its end; "" when nothing had arrived
  std::vector<std::string> names;  // of the files in it
  bool has_deleted = false;        // the device has been told to delete something
};

// Puts the files that a job has fetched into its folder below "Rescued": each as it came, and beside
// statistics a CSV where they can be decoded, from the site that the session works on. `accounts` are those
// whose files are meant, all when it is empty. The job's folder stays as it is. Fault when a file cannot be
// written.
Rescue rescue_files(const BusinessRulesParts& parts, const std::string& job_name,
                    const results::JobFindings& found, const std::vector<std::string>& accounts = {});

// The box that says where they are.
platform::Message rescue_message(const platform::Files& files, const Rescue& rescue);

}  // namespace qvrcom::rules
