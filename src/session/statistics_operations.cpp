#include "session/statistics_operations.h"

#include <utility>

#include "base/fault.h"
#include "base/text.h"
#include "environment/names.h"
#include "jobs/job_findings.h"
#include "jobs/report_file.h"
#include "protocol/device_files.h"
#include "protocol/job_report.h"
#include "protocol/script_grammar.h"
#include "session/job_steps.h"
#include "session/operations.h"

namespace qvrcom::session {

// What differs between the operations.
struct StatisticsOperations::Job {
  const char* operation;  // its name, and the beginning of the job's description
  const char* procedure;
  bool fetches;
  bool clears;
  NewOutcome new_outcome = nullptr;  // of a retrieval, for the two forms
  OldOutcome old_outcome = nullptr;
};

const StatisticsOperations::Job StatisticsOperations::kRetrieve{
    operation::kRetrieveStatistics,
    "ReceiveStatSinPart_NewQVR",
    true,
    false,
    &StatisticsOperations::ProcessReceiveStatSinPart_NewQVR_NewStats,
    &StatisticsOperations::ProcessReceiveStatSinPart_NewQVR_OldStats};
const StatisticsOperations::Job StatisticsOperations::kReset{operation::kResetStatistics,
                                                             "ResetStatSinPart_NewQVR", false, true};
const StatisticsOperations::Job StatisticsOperations::kRetrieveReset{
    operation::kRetrieveResetStatistics,
    "ReceiveResetStatSinPart_NewQVR",
    true,
    true,
    &StatisticsOperations::ProcessReceiveResetStatSinPart_NewQVR_NewStats,
    &StatisticsOperations::ProcessReceiveResetStatSinPart_NewQVR_OldStats};

StatisticsOperations::StatisticsOperations(const BusinessRulesParts& parts, SessionFrame& frame)
    : session_(parts.session),
      files_(parts.files),
      dbase_(parts.dbase),
      frame_(frame),
      rules_(frame.rules()),
      old_(parts, frame),
      trap_(parts.ui) {}

void StatisticsOperations::ReceiveStatSinPart_NewQVR() {
  retrieve(kRetrieve);
}

void StatisticsOperations::ReceiveResetStatSinPart_NewQVR() {
  retrieve(kRetrieveReset);
}

void StatisticsOperations::ResetStatSinPart_NewQVR() {
  trap_(kReset.procedure, [&] {
    write(kReset, generation());
    frame_.submit({.outcome_routine = [&] { ProcessResetStatSinPart_NewQVR(); }});
  });
}

void StatisticsOperations::retrieve(const Job& job) {
  trap_(job.procedure, [&] {
    const std::string statistics = generation();
    write(job, statistics);
    frame_.submit({.outcome_routine = [&] { run_outcome(job, statistics == environment::kOldStats); }});
  });
}

void StatisticsOperations::run_outcome(const Job& job, bool is_old_form) {
  if (is_old_form) {
    (this->*job.old_outcome)(old_.line_file(partition()), old_.node_file(partition()));
  } else {
    (this->*job.new_outcome)(session_.site.SiteName, session_.site.UserSiteID);
  }
}

void StatisticsOperations::process_outcome(std::string_view operation) {
  if (operation == kReset.operation) return ProcessResetStatSinPart_NewQVR();
  const Job& job = operation == kRetrieve.operation ? kRetrieve : kRetrieveReset;
  const auto found = jobs::findings_of(files_, session_.job.Folder);
  const auto* account = found ? found->of(protocol::account_of(partition())) : nullptr;
  const bool is_new_form = account == nullptr || account->fetches.empty() ||
                           account->fetches.front().remote == protocol::kStatisticsTable;
  run_outcome(job, !is_new_form);
}

void StatisticsOperations::write(const Job& job, const std::string& statistics) {
  frame_.show_step("Creating Script");
  const std::string description = job.operation + session_.run.PartitionID;
  rules_.Write_Script_Header(script_header(session_, description));
  if (job.fetches && statistics == environment::kOldStats) {
    write_old_form(job);
  } else {
    write_new_form(job);
  }
  rules_.Write_Script_End();
  write_index(rules_, session_, description);
  if (session_.run.ImmediateRun) session_.run.SessionConfigID = "1000";
}

void StatisticsOperations::write_old_form(const Job& job) {
  old_.write_system();
  old_.write_partition(session_.run.PartitionID, job.clears);
}

void StatisticsOperations::write_new_form(const Job& job) {
  std::vector<protocol::ScriptCommand> commands{protocol::select_partition(session_.run.PartitionID)};
  if (job.fetches) commands.push_back(protocol::get_file(protocol::kStatisticsTable, downloaded_file()));
  if (job.clears) add_clearing(commands);
  rules_.Write_Script(protocol::commands_text(commands));
}

// Asked twice: whatever is neither of the two answers counts as no generation, which takes the newer path.
std::string StatisticsOperations::generation() const {
  const std::string& version = session_.site.FirmwareVersion;
  if (rules_.Check_Firmware_Version(version) == environment::kOldStats) return environment::kOldStats;
  if (rules_.Check_Firmware_Version(version) == environment::kNewStats) return environment::kNewStats;
  return {};
}

std::string StatisticsOperations::partition() const {
  return std::string(base::trim(session_.run.PartitionID));
}

std::string StatisticsOperations::downloaded_file() const {
  return session_.job.Folder + "\\AllStatsP" + partition() + ".csv";
}

Outcome StatisticsOperations::outcome_of(const Job& job, const std::string& procedure,
                                         const char* completed) const {
  return {.procedure = procedure,
          .completed = std::string("Completed ") + completed,
          .error = std::string("Error ") + job.operation,
          .cancelled = std::string("Cancelled ") + job.operation};
}

void StatisticsOperations::ProcessReceiveStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                                     const std::string& user_site_id) {
  run_new_outcome(kRetrieve, "ProcessReceiveStatSinPart_NewQVR_NewStats", site_name, user_site_id);
}

void StatisticsOperations::ProcessReceiveResetStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                                          const std::string& user_site_id) {
  run_new_outcome(kRetrieveReset, "ProcessReceiveResetStatSinPart_NewQVR_NewStats", site_name, user_site_id);
}

void StatisticsOperations::ProcessReceiveStatSinPart_NewQVR_OldStats(const std::string& line_stat_file,
                                                                     const std::string& node_stat_file) {
  run_old_outcome(kRetrieve, "ProcessReceiveStatSinPart_NewQVR_OldStats", line_stat_file, node_stat_file);
}

void StatisticsOperations::ProcessReceiveResetStatSinPart_NewQVR_OldStats(const std::string& line_stat_file,
                                                                          const std::string& node_stat_file) {
  run_old_outcome(kRetrieveReset, "ProcessReceiveResetStatSinPart_NewQVR_OldStats", line_stat_file,
                  node_stat_file);
}

void StatisticsOperations::ProcessResetStatSinPart_NewQVR() {
  frame_.run_outcome(outcome_of(kReset, "ProcessResetStatSinPart_NewQVR", kReset.operation));
}

// A retrieval that also resets reports itself as a plain retrieval when it is complete.
void StatisticsOperations::run_new_outcome(const Job& job, const char* procedure,
                                           const std::string& site_name, const std::string& user_site_id) {
  Outcome outcome = outcome_of(job, procedure, kRetrieve.operation);
  outcome.process = [&] {
    save_statistics(site_name, user_site_id);
    return Remainder{};
  };
  frame_.run_outcome(outcome);
}

void StatisticsOperations::run_old_outcome(const Job& job, const char* procedure,
                                           const std::string& line_stat_file,
                                           const std::string& node_stat_file) {
  Outcome outcome = outcome_of(job, procedure, job.operation);
  outcome.process = [&] { return decode_statistics(line_stat_file, node_stat_file); };
  frame_.run_outcome(outcome);
}

// The device's own file with the site in front of it. StatsResultFile names it only once it is saved.
void StatisticsOperations::save_statistics(const std::string& site_name, const std::string& user_site_id) {
  if (has_been_taken()) return;
  frame_.face().enable_button(false);
  frame_.face().show_hint(true);
  frame_.show_step("Processing Data ...");
  const std::string sent = files_.read(downloaded_file());
  if (base::trim(sent).empty()) old_.miss("The device's statistics file holds nothing.");
  const std::string text = site_lines(site_name, user_site_id) + sent;
  const std::string path = rules_.Get_Stats_FileName(session_.site.SiteID, dbase_);
  if (path.empty()) {
    throw base::Fault(base::kPathNotFound,
                      "There is no name for the statistics file; the message before this one says why.");
  }
  const std::string account = protocol::account_of(partition());
  jobs::note_taking(files_, session_.job.Folder, account, path);
  files_.replace(path, text);
  session_.run.StatsResultFile = jobs::note_taken(files_, session_.job.Folder, account, path);
}

// A program that was killed may have come as far as the CSV.
bool StatisticsOperations::has_been_taken() {
  const auto report = jobs::report_of(files_, session_.job.Folder);
  const std::string csv = report ? report->taken(protocol::account_of(partition())) : std::string{};
  if (csv.empty()) return false;
  session_.run.StatsResultFile = csv;
  return true;
}

Remainder StatisticsOperations::decode_statistics(const std::string& line_stat_file,
                                                  const std::string& node_stat_file) {
  if (has_been_taken()) return {};
  old_.take_images();
  const std::string& wanted = session_.run.PartitionID;
  if (!old_.has_delivered(wanted)) {
    old_.miss("Partition " + partition() +
              " is not in the configuration, or its image could not be read, so its statistics were not "
              "decoded. What the device sent is kept in " +
              files_.native(session_.job.Folder) + ".");
    return {.keeps_job = true, .undecoded = true};
  }
  const std::string lack = old_.write_csv(wanted, line_stat_file, node_stat_file);
  if (!lack.empty()) old_.miss("Partition " + partition() + " " + lack + ".");
  if (lack.empty()) {
    const std::string csv = std::exchange(session_.run.StatsResultFile, {});
    session_.run.StatsResultFile =
        jobs::note_taken(files_, session_.job.Folder, protocol::account_of(partition()), csv);
  }
  return {.undecoded = !lack.empty()};
}

}  // namespace qvrcom::session
