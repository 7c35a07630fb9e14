#include "requests/late_results_request.h"

#include <algorithm>
#include <array>

#include "protocol/index_line.h"
#include "protocol/job_lists.h"
#include "protocol/job_name.h"

namespace qvrcom::requests {
namespace {

namespace operation = session::operation;

// The operations whose name a job's description continues with a partition.
constexpr std::array<const char*, 3> kOfPartition{operation::kRetrieveStatistics, operation::kResetStatistics,
                                                  operation::kRetrieveResetStatistics};

}  // namespace

std::vector<jobs::BoardJob> LateResultsRequest::waiting() const {
  return jobs::unprocessed_jobs(board_.read_all(jobs::JobBoard::Extent::kFolders));
}

LateResultsAnswer LateResultsRequest::process(const jobs::BoardJob& job) {
  LateResultsAnswer answer;
  answer.result = trap_("LateResultsRequest", [&] {
    return request_.run_alone([&](session::SessionResult& brought) {
      const auto jobs = waiting();
      const bool is_there = std::any_of(jobs.begin(), jobs.end(),
                                        [&](const jobs::BoardJob& each) { return each.job == job.job; });
      if (!is_there) {
        request_.refuse("The job " + job.job + " does not wait to be processed any more.",
                        "Another program has processed or removed it.");
        return RequestResult::kNotDone;
      }
      board_.scheduler().need_index();  // the outcome routines take the job off it
      take_over(job);
      return run(job, answer, brought);
    });
  });
  return answer;
}

RequestResult LateResultsRequest::run(const jobs::BoardJob& job, LateResultsAnswer& answer,
                                      session::SessionResult& brought) {
  brought = parts_.screen.show_late_outcome();
  const base::RunValues& run = parts_.rules.session.run;
  for (const session::PartitionFile& each : brought.partition_files)
    answer.files.push_back(each.file);
  for (const std::string& file : {run.StatsResultFile, brought.same_log}) {
    const bool is_new = !file.empty() && (answer.files.empty() || answer.files.back() != file);
    if (is_new) answer.files.push_back(file);
  }
  // A folder that is still there says that its files could not be made use of.
  const bool is_gone = !parts_.rules.files.folder_exists(parts_.rules.session.job.Folder);
  const bool is_whole = job.ending() == protocol::Ending::kCompleted && brought.missing.empty() && is_gone;
  return is_whole ? RequestResult::kDone : RequestResult::kNotDone;
}

// The outcome routines find a job by its line: one that no list holds any more gets a new one.
std::string LateResultsRequest::list_again(const jobs::BoardJob& job) const {
  const std::string folder = board_.scheduler().path(job.job);
  const base::LocalTime start = job.start.value_or(parts_.rules.clock.now());
  std::string line =
      protocol::index_line_text({.creation = base::serial_text(start),
                                 .created = base::index_stamp(start),
                                 .description = job.description,
                                 .site_name = job.site_name,
                                 .site_id = job.site_id,
                                 .start = base::serial_text(start),
                                 .interval = {},
                                 .period = {},
                                 .device_id = job.device_id,
                                 .script_path = protocol::job_file(folder, protocol::kScriptExtension)});
  const auto ending = job.ending();
  if (ending)
    parts_.rules.files.append_line(board_.scheduler().path(protocol::result_list(*ending).pending_file),
                                   line);
  return line;
}

void LateResultsRequest::take_over(const jobs::BoardJob& job) const {
  base::Session& session = parts_.rules.session;
  session.site.SiteName = job.site_name;
  session.site.UserSiteID = job.site_id;
  session.site.SiteID = job.device_id;
  session.site.DeviceGeneration = "NEW";
  const auto name = std::find_if(kOfPartition.begin(), kOfPartition.end(),
                                 [&](const char* each) { return job.description.starts_with(each); });
  const std::string of_partition = name == kOfPartition.end() ? std::string{} : *name;
  session.run.CurrentOperation = of_partition.empty() ? job.description : of_partition;
  session.run.PartitionID =
      of_partition.empty() ? std::string{} : job.description.substr(of_partition.size());
  session.run.ImmediateRun = true;
  session.run.CancelRequested = false;
  const auto ending = job.ending();
  session.run.SessionStatus = ending ? protocol::result_list(*ending).status : "";
  session.job.SessionStart = job.created.value_or(parts_.rules.clock.now());
  session.job.Name = job.job;
  session.job.Folder = board_.scheduler().path(job.job);
  // What stands behind the time stamp, which is the same length in every name.
  const std::size_t stamp = base::job_name_stamp(session.job.SessionStart).size();
  session.job.Suffix = job.job.substr(std::min(stamp, job.job.size()));
  session.job.JobId = job.line.empty() ? list_again(job) : job.line;
  parts_.database.run("Update_SessionQVR", {session.site.SiteID});
}

std::string LateResultsRequest::notice(const jobs::Board& board) const {
  const std::vector<jobs::BoardJob> jobs = jobs::unprocessed_jobs(board);
  if (jobs.empty() || !parts_.gate.try_enter()) return {};
  std::string names;
  constexpr std::size_t kMostNamed = 5;
  for (std::size_t i = 0; i < std::min(jobs.size(), kMostNamed); ++i)
    names += (i == 0 ? "" : ", ") + jobs[i].job;
  if (jobs.size() > kMostNamed) names += ", ...";
  const std::string count = std::to_string(jobs.size());
  return (jobs.size() == 1 ? std::string("A finished job has not been processed: ")
                           : count + " finished jobs have not been processed: ") +
         names + ".";
}

}  // namespace qvrcom::requests
