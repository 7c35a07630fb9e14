#pragma once

#include <span>
#include <string>

#include "base/session_values.h"
#include "protocol/script_grammar.h"
#include "session/business_rules.h"
#include "session/scheduler_link.h"

// Steps that every immediate job goes through, whoever writes it.
namespace qvrcom::session {

// The suffix of a job that nobody numbers.
inline constexpr const char* kPlainSuffix = "000";

// Sets the job base time to now; to a later second when an earlier run of this one has used the name of one
// of the suffixes, as the last job, a job folder or a job's log tells. Two jobs of one name and description
// would have the same index line, and the scheduler runs a line once.
void take_base_time(const BusinessRulesParts& parts, std::span<const std::string> suffixes);

// Start, stop, interval and period of a job that runs at once.
void take_immediate_times(base::JobValues& job);

// The script header of the session's site.
protocol::ScriptHeader script_header(const base::Session& session, const std::string& description);

// Writes the index line of the session's site.
void write_index(BusinessRules& rules, const base::Session& session, const std::string& description);

// Fault when the index has lost the job, which would be waited for without end. Its folder is removed.
void require_listed(BusinessRules& rules, const SchedulerLink& link);

// The two lines that name the site in front of a file that its device made.
std::string site_lines(const std::string& site_name, const std::string& user_site_id);

// Adds a sentence to the log of the session's job.
void log_to_job(const BusinessRulesParts& parts, const std::string& sentence);

}  // namespace qvrcom::session
