#include "session/job_steps.h"

#include <algorithm>
#include <chrono>

#include "base/date_serial.h"
#include "base/fault.h"
#include "base/number.h"
#include "base/text.h"
#include "jobs/job_log.h"
#include "protocol/job_lists.h"
#include "protocol/job_log.h"
#include "protocol/job_name.h"
#include "siterules/device_address.h"

namespace qvrcom::session {

void take_base_time(const BusinessRulesParts& parts, std::span<const std::string> suffixes) {
  base::JobValues& job = parts.session.job;
  const std::string scheduler = environment::scheduler_folder(parts.session.run, parts.folders);
  const std::string logs = parts.folders.GetLogsFolder();
  const auto is_taken = [&](const std::string& suffix) {
    const std::string name = protocol::job_name(job.SessionStart, suffix);
    return name == job.Name || parts.files.folder_exists(scheduler + name) ||
           parts.files.file_exists(protocol::log_path(logs, name));
  };
  job.SessionStart = parts.clock.now();
  while (std::any_of(suffixes.begin(), suffixes.end(), is_taken)) {
    parts.clock.sleep(std::chrono::milliseconds(100));
    job.SessionStart = parts.clock.now();
  }
}

void take_immediate_times(base::JobValues& job) {
  job.StartDate = job.StopDate = base::serial_text(job.SessionStart);
  job.Interval.clear();
  job.Period.clear();
}

protocol::ScriptHeader script_header(const base::Session& session, const std::string& description) {
  const base::SiteValues& site = session.site;
  return {
      .site_name = site.SiteName,
      .site_id = site.UserSiteID,
      .qvr_id = site.SiteID,
      .description = description,
      .dial_up_flag = base::to_int16(site.ConnectMethod),
      .dial_up_connection = site.DialupConnection,
      .number_to_dial = site.NumberToDial,
      .ftp_address = siterules::device_address(site.ConnectMethod, site.IPLan, site.IPDirect, site.IPModem),
      .ftp_user = site.LoginName,
      .ftp_password = site.AccessCode,
      .start_date = session.job.StartDate,
      .stop_date = session.job.StopDate,
      .interval = session.job.Interval,
      .period = session.job.Period};
}

void write_index(BusinessRules& rules, const base::Session& session, const std::string& description) {
  rules.Write_Index(session.site.SiteName, session.site.UserSiteID, description, session.job.StartDate,
                    session.job.Interval, session.job.Period);
}

void require_listed(BusinessRules& rules, const SchedulerLink& link) {
  if (link.JobListedIn(protocol::kIndexFile)) return;
  rules.Remove_Folder();
  throw base::Fault(
      "Job not listed",
      "index.sch does not hold the job, so the scheduler would never run it. The site's name, "
      "identifier and connection must not contain \";\" or \"^\", and the disk must not be full.");
}

std::string site_lines(const std::string& site_name, const std::string& user_site_id) {
  const std::string line_end(base::kCrLf);
  return "SiteName," + site_name + line_end + "UserSiteID," + user_site_id + line_end;
}

void log_to_job(const BusinessRulesParts& parts, const std::string& sentence) {
  jobs::write_job_log(parts.files, parts.clock, parts.folders.GetLogsFolder(), parts.session.job.Name,
                      sentence);
}

}  // namespace qvrcom::session
