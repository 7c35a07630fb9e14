#include "session/old_statistics.h"

#include <algorithm>

#include "base/number.h"
#include "base/text.h"
#include "images/statistics_files.h"
#include "jobs/report_file.h"
#include "protocol/device_files.h"
#include "session/job_steps.h"

namespace qvrcom::session {
void add_clearing(std::vector<protocol::ScriptCommand>& commands) {
  for (const char* file : {protocol::kLineStatistics, protocol::kNodeStatistics})
    commands.push_back(protocol::delete_file(file));
}

std::string OldStatistics::in_folder(const char* begin, const std::string& partition) const {
  return session_.job.Folder + "\\" + begin + std::string(base::trim(partition)) + ".dat";
}

std::string OldStatistics::line_file(const std::string& partition) const {
  return in_folder("linestatP", partition);
}
std::string OldStatistics::node_file(const std::string& partition) const {
  return in_folder("nodestatP", partition);
}

void OldStatistics::write_system() {
  rules_.Write_Script_System(session_.job.Folder + "\\getdBaseSys.dat");
}

void OldStatistics::write_partition(const std::string& partition, bool clears) {
  rules_.Write_Script_Stats(partition, line_file(partition), node_file(partition),
                            in_folder("getdBaseP", partition));
  if (!clears) return;
  std::vector<protocol::ScriptCommand> commands;
  add_clearing(commands);
  rules_.Write_Script(protocol::commands_text(commands));
}

// The session runs under configuration "1000", its outcome is decoded under "1".
void OldStatistics::take_images() {
  frame_.show_step("Processing Data ...");
  session_.run.SessionConfigID = "1";
  rules_.clear_received_partitions();
  rules_.Process_CompletedSch_File();
}

// The last element of the list is spare.
bool OldStatistics::has_delivered(const std::string& partition) const {
  const auto& received = session_.received.ReceivedPartitions;
  const double wanted = base::parse_number(partition).value_or(0);
  return !received.empty() && std::any_of(received.begin(), received.end() - 1, [&](const std::string& each) {
    return base::parse_number(each).value_or(0) == wanted;
  });
}

std::string OldStatistics::write_csv(const std::string& partition, const std::string& line_stat_file,
                                     const std::string& node_stat_file) {
  session_.run.StatsResultFile.clear();
  const std::string& configuration = session_.run.SessionConfigID;
  const images::StatisticsAnswers read =
      rules_.Process_PartStats_binary(configuration, partition, line_stat_file, node_stat_file);
  if (!read.lines && !read.nodes)
    return "has no CSV, for neither its line statistics nor its node statistics could be read";
  note_next_file(partition);
  rules_.Process_Write_CSV(configuration, partition);
  if (session_.run.StatsResultFile.empty()) return "has no CSV";
  if (!read.lines) return "has no line statistics, which could not be read";
  return read.nodes ? "" : "has no node statistics, which could not be read";
}

// The component that writes the CSV names it by the same rule. Where there is no name, it says so itself.
void OldStatistics::note_next_file(const std::string& partition) {
  platform::Silence silence;
  images::StatisticsFiles names(parts_.folders, parts_.files, silence);
  jobs::note_taking(parts_.files, session_.job.Folder, protocol::account_of(partition),
                    names.Get_Stats_FileName(session_.site.SiteID, parts_.dbase));
}

void OldStatistics::miss(const std::string& reason) {
  frame_.result().missing = reason;
  log_to_job(parts_, reason);
}

}  // namespace qvrcom::session
