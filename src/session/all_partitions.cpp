#include "session/all_partitions.h"

#include "rules/job_steps.h"
#include "session/operations.h"

namespace qvrcom::session {
namespace {

constexpr const char* kName = operation::kRetrieveResetAllStatistics;
constexpr const char* kProcedure = "ReceiveResetStat_NewQVR";
constexpr int kPartitions = 64;

}  // namespace

void AllPartitions::ReceiveResetStat_NewQVR() {
  trap_(kProcedure, [&] {
    write();
    Outcome outcome{.procedure = kProcedure,
                    .completed = std::string("Completed ") + kName,
                    .error = std::string("Error ") + kName,
                    .cancelled = std::string("Cancelled ") + kName};
    outcome.process = [this] {
      save_statistics();
      return true;
    };
    frame_.submit({.outcome_routine = [&] { frame_.run_outcome(outcome); }});
  });
}

void AllPartitions::write() {
  frame_.show_step("Creating Script");
  rules_.Write_Script_Header(rules::script_header(session_, kName));
  statistics_.write_system();
  for (int partition = 1; partition <= kPartitions; ++partition)
    statistics_.write_partition(std::to_string(partition), true);
  rules_.Write_Script_End();
  rules::write_index(rules_, session_, kName);
  if (session_.run.ImmediateRun) session_.run.SessionConfigID = "1000";
}

void AllPartitions::save_statistics() {
  statistics_.take_images();
  std::string failed;
  for (int number = 1; number <= kPartitions; ++number) {
    const std::string partition = std::to_string(number);
    if (!has_arrived(partition)) continue;
    if (statistics_.write_csv(partition, statistics_.line_file(partition),
                              statistics_.node_file(partition))) {
      session_.run.PartitionResults.push_back({number, session_.run.StatsResultFile});
    } else {
      failed += (failed.empty() ? "" : ", ") + partition;
    }
  }
  if (failed.empty() && session_.run.PartitionResults.empty()) {
    session_.run.MissingResult = "No partition of the configuration has sent its statistics.";
  }
  if (!failed.empty()) statistics_.miss("No CSV was written for partition " + failed + ".");
}

bool AllPartitions::has_arrived(const std::string& partition) {
  return files_.file_exists(statistics_.line_file(partition)) &&
         files_.file_exists(statistics_.node_file(partition)) && rules_.ExistPartID(partition);
}

}  // namespace qvrcom::session
