#include "session/statistics_operations.h"

#include "base/fault.h"
#include "base/number.h"
#include "base/text.h"
#include "environment/names.h"
#include "session/operations.h"
#include "siterules/device_address.h"

namespace qvrcom::session {

// What differs between the operations.
struct StatisticsOperations::Job {
  const char* operation;  // its name, and the beginning of the job's description
  const char* procedure;
  bool fetches;
  bool clears;
  const char* completed;  // what the status line names after "Completed"
};

// A retrieval that also resets reports itself as a plain retrieval when it is complete.
const StatisticsOperations::Job StatisticsOperations::kRetrieve{
    operation::kRetrieveStatistics, "ReceiveStatSinPart_NewQVR", true, false, operation::kRetrieveStatistics};
const StatisticsOperations::Job StatisticsOperations::kReset{
    operation::kResetStatistics, "ResetStatSinPart_NewQVR", false, true, operation::kResetStatistics};
const StatisticsOperations::Job StatisticsOperations::kRetrieveReset{operation::kRetrieveResetStatistics,
                                                                     "ReceiveResetStatSinPart_NewQVR", true,
                                                                     true, operation::kRetrieveStatistics};

StatisticsOperations::StatisticsOperations(const rules::BusinessRulesParts& parts, SessionFrame& frame)
    : session_(parts.session),
      files_(parts.files),
      dbase_(parts.dbase),
      frame_(frame),
      rules_(frame.rules()),
      trap_(parts.ui) {}

void StatisticsOperations::ReceiveStatSinPart_NewQVR() {
  trap_(kRetrieve.procedure, [&] {
    write(kRetrieve);
    frame_.submit(
        [&] { ProcessReceiveStatSinPart_NewQVR_NewStats(session_.site.SiteName, session_.site.UserSiteID); });
  });
}

void StatisticsOperations::ResetStatSinPart_NewQVR() {
  trap_(kReset.procedure, [&] {
    write(kReset);
    frame_.submit([&] { ProcessResetStatSinPart_NewQVR(); });
  });
}

void StatisticsOperations::ReceiveResetStatSinPart_NewQVR() {
  trap_(kRetrieveReset.procedure, [&] {
    write(kRetrieveReset);
    frame_.submit([&] {
      ProcessReceiveResetStatSinPart_NewQVR_NewStats(session_.site.SiteName, session_.site.UserSiteID);
    });
  });
}

void StatisticsOperations::write(const Job& job) {
  frame_.show_step("Creating Script");
  const base::SiteValues& site = session_.site;
  const base::JobValues& times = session_.job;
  const std::string address =
      siterules::device_address(site.ConnectMethod, site.IPLan, site.IPDirect, site.IPModem);
  const std::string description = job.operation + session_.run.PartitionID;
  const std::string statistics = generation();
  if (job.fetches && statistics == environment::kOldStats) refuse_old_statistics();
  rules_.Write_Script_Header({.site_name = site.SiteName,
                              .site_id = site.UserSiteID,
                              .qvr_id = site.SiteID,
                              .description = description,
                              .dial_up_flag = base::to_int16(site.ConnectMethod),
                              .dial_up_connection = site.DialupConnection,
                              .number_to_dial = site.NumberToDial,
                              .ftp_address = address,
                              .ftp_user = site.LoginName,
                              .ftp_password = site.AccessCode,
                              .start_date = times.StartDate,
                              .stop_date = times.StopDate,
                              .interval = times.Interval,
                              .period = times.Period});
  rules_.Write_Script(script_of(job));
  rules_.Write_Script_End();
  rules_.Write_Index(site.SiteName, site.UserSiteID, description, times.StartDate, times.Interval,
                     times.Period);
  if (session_.run.ImmediateRun) session_.run.SessionConfigID = "1000";
}

// Asked twice: whatever is neither of the two answers counts as no generation, which takes the newer path.
std::string StatisticsOperations::generation() const {
  const std::string& version = session_.site.FirmwareVersion;
  if (rules_.Check_Firmware_Version(version) == environment::kOldStats) return environment::kOldStats;
  if (rules_.Check_Firmware_Version(version) == environment::kNewStats) return environment::kNewStats;
  return {};
}

void StatisticsOperations::refuse_old_statistics() const {
  throw base::Fault("Older statistics form",
                    "The device's firmware " + session_.site.FirmwareVersion +
                        " keeps its statistics in the older binary form, which this version does not read. "
                        "Nothing was sent to the device.");
}

std::string StatisticsOperations::partition() const {
  return std::string(base::trim(session_.run.PartitionID));
}

std::string StatisticsOperations::downloaded_file() const {
  return session_.job.Folder + "\\AllStatsP" + partition() + ".csv";
}

std::string StatisticsOperations::script_of(const Job& job) const {
  const std::string line_end(base::kCrLf);
  std::string script = "FTPACCT;part" + partition() + ";";
  if (job.fetches) {
    script += line_end + "FTPGET;REMOTEFILE=allstats.csv;LOCALFILE=" + downloaded_file() + ";SIZE=20000;";
  }
  if (job.clears) script += line_end + "FTPDELETE;linestat;" + line_end + "FTPDELETE;nodestat;";
  return script;
}

Outcome StatisticsOperations::outcome_of(const Job& job, const std::string& procedure) const {
  return {.procedure = procedure,
          .completed = std::string("Completed ") + job.completed,
          .error = std::string("Error ") + job.operation,
          .cancelled = std::string("Cancelled ") + job.operation};
}

void StatisticsOperations::ProcessReceiveStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                                     const std::string& user_site_id) {
  Outcome outcome = outcome_of(kRetrieve, "ProcessReceiveStatSinPart_NewQVR_NewStats");
  outcome.process = [&] { save_statistics(site_name, user_site_id); };
  frame_.run_outcome(outcome);
}

void StatisticsOperations::ProcessReceiveResetStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                                          const std::string& user_site_id) {
  Outcome outcome = outcome_of(kRetrieveReset, "ProcessReceiveResetStatSinPart_NewQVR_NewStats");
  outcome.process = [&] { save_statistics(site_name, user_site_id); };
  frame_.run_outcome(outcome);
}

void StatisticsOperations::ProcessResetStatSinPart_NewQVR() {
  frame_.run_outcome(outcome_of(kReset, "ProcessResetStatSinPart_NewQVR"));
}

// The device's own file with the site in front of it. StatsResultFile names it only once it is saved.
void StatisticsOperations::save_statistics(const std::string& site_name, const std::string& user_site_id) {
  frame_.face().enable_button(false);
  frame_.face().show_hint(true);
  frame_.show_step("Processing Data ...");
  const std::string line_end(base::kCrLf);
  const std::string text = "SiteName," + site_name + line_end + "UserSiteID," + user_site_id + line_end +
                           files_.read(downloaded_file());
  const std::string path = rules_.Get_Stats_FileName(session_.site.SiteID, dbase_);
  if (path.empty()) {
    throw base::Fault(base::kPathNotFound,
                      "There is no name for the statistics file: the site has no "
                      "statistics settings. The download is kept in " +
                          files_.native(session_.job.Folder) + ".");
  }
  files_.replace(path, text);
  session_.run.StatsResultFile = path;
}

}  // namespace qvrcom::session
