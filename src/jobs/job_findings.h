#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "protocol/job_report.h"
#include "protocol/script_grammar.h"

namespace qvrcom::jobs {

// What came of the script lines of one account, from its account line to the next.
struct AccountFindings {
  struct Fetch {
    std::string remote;  // name of the device file
    std::string path;    // of the local file
    bool arrived = false;
  };

  std::string account;  // "part3"; "" before the first account line
  std::vector<Fetch> fetches;
  std::vector<std::string> kept;  // device files that were to be deleted and, as the report says, were not
  bool has_deleted = false;       // the device was told to delete something of it, or may have been
  std::string taken;              // what has come of its files already, as the report says; or ""
  std::string reason;             // why the rest of the lines was left out, as the report says; or ""

  const Fetch* arrived(std::string_view remote) const;  // null when it did not
  std::vector<std::string> missing() const;             // device files that did not arrive
};

// What a job has done, by its script, its folder, and its report where there is one.
struct JobFindings {
  protocol::Script script;
  bool has_deleted = false;  // the device was told to delete something, or may have been
  std::vector<AccountFindings> accounts;

  const AccountFindings* of(std::string_view account) const;  // null when the script has no such account
  bool has_files() const;                                     // whether anything arrived
};

// `folder` is a job's, without a backslash at its end. Nothing when it holds no script that can be read.
// Without a report a job that was to delete something has done so when anything arrived.
std::optional<JobFindings> findings_of(const platform::Files& files, const std::string& folder);

}  // namespace qvrcom::jobs
