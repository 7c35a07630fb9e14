#include "session/all_partitions.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/fault.h"
#include "jobs/report_file.h"
#include "protocol/device_files.h"
#include "protocol/job_report.h"
#include "session/job_steps.h"
#include "session/operations.h"

namespace qvrcom::session {
namespace {

constexpr const char* kName = operation::kRetrieveResetAllStatistics;
constexpr const char* kProcedure = "ReceiveResetStat_NewQVR";
constexpr int kPartitions = 64;

}  // namespace

// What was not done, by kind: partitions that share a reason stand together.
class AllPartitions::Shortcomings {
 public:
  enum Kind : std::size_t { kNotFetched, kNotReset, kNotInConfiguration, kNotDecoded };

  void add(Kind kind, int partition, const std::string& reason) {
    auto& reasons = by_kind_[kind];
    auto same =
        std::find_if(reasons.begin(), reasons.end(), [&](const auto& r) { return r.reason == reason; });
    if (same == reasons.end()) same = reasons.insert(reasons.end(), {reason, {}});
    same->partitions += (same->partitions.empty() ? "" : ", ") + std::to_string(partition);
  }
  void keep(const std::string& account) { undecoded_.push_back(account); }

  const std::vector<std::string>& undecoded() const { return undecoded_; }

  // A sentence a kind.
  std::string text() const {
    constexpr std::array<const char*, 4> kWords{
        "Not fetched: partition ", "Fetched but not reset: partition ",
        "Fetched but not in the configuration, so not decoded: partition ", "Fetched, but: partition "};
    std::string text;
    for (std::size_t kind = 0; kind < by_kind_.size(); ++kind) {
      std::string sentence;
      for (const Reason& each : by_kind_[kind])
        sentence += (sentence.empty() ? kWords[kind] : "; ") + each.partitions +
                    (each.reason.empty() ? "" : " (" + each.reason + ")");
      if (!sentence.empty()) text += (text.empty() ? "" : " ") + sentence + ".";
    }
    return text;
  }

 private:
  struct Reason {
    std::string reason;
    std::string partitions;
  };
  std::array<std::vector<Reason>, 4> by_kind_;
  std::vector<std::string> undecoded_;  // accounts
};

void AllPartitions::ReceiveResetStat_NewQVR() {
  trap_(kProcedure, [&] {
    write();
    frame_.submit({.outcome_routine = [&] { process_outcome(); }});
  });
}

void AllPartitions::process_outcome() {
  frame_.run_outcome({.procedure = kProcedure,
                      .completed = std::string("Completed ") + kName,
                      .error = std::string("Error ") + kName,
                      .cancelled = std::string("Cancelled ") + kName,
                      .process = [this] { return save_statistics(); }});
}

void AllPartitions::write() {
  frame_.show_step("Creating Script");
  rules_.Write_Script_Header(script_header(session_, kName));
  statistics_.write_system();
  for (int partition = 1; partition <= kPartitions; ++partition)
    statistics_.write_partition(std::to_string(partition), true);
  rules_.Write_Script_End();
  write_index(rules_, session_, kName);
  if (session_.run.ImmediateRun) session_.run.SessionConfigID = "1000";
}

Remainder AllPartitions::save_statistics() {
  statistics_.take_images();
  const auto found = jobs::findings_of(files_, session_.job.Folder);
  if (!found) throw base::Fault(base::kFileNotFound, "The job's script is not there any more.");
  Shortcomings shortcomings;
  for (int number = 1; number <= kPartitions; ++number) {
    if (const auto* account = found->of(protocol::account_of(std::to_string(number))))
      save_partition(number, *account, shortcomings);
  }
  const std::string text = shortcomings.text();
  if (!text.empty()) {
    statistics_.miss(text);
  } else if (frame_.result().partition_files.empty()) {
    statistics_.miss("No partition of the configuration has sent its statistics.");
  }
  return {.undecoded = !shortcomings.undecoded().empty(), .accounts = shortcomings.undecoded()};
}

// A partition that neither the configuration nor the device has is none. Without the device's own
// configuration any may be one: what an earlier one left in the database may be another site's.
void AllPartitions::save_partition(int number, const jobs::AccountFindings& found,
                                   Shortcomings& shortcomings) {
  if (!found.taken.empty()) return frame_.result().partition_files.push_back({number, found.taken});
  const std::string partition = std::to_string(number);
  const bool lines = found.arrived(protocol::kLineStatistics) != nullptr;
  const bool nodes = found.arrived(protocol::kNodeStatistics) != nullptr;
  const bool is_known = !session_.received.SystemImageRead || rules_.ExistPartID(partition);
  if (!lines && !nodes && !is_known) return;
  if (!found.kept.empty() && lines && nodes) shortcomings.add(Shortcomings::kNotReset, number, found.reason);
  if (!lines || !nodes) {
    shortcomings.add(Shortcomings::kNotFetched, number, found.reason);
  } else if (!is_known) {
    shortcomings.add(Shortcomings::kNotInConfiguration, number, {});
  } else {
    const std::string lack =
        statistics_.write_csv(partition, statistics_.line_file(partition), statistics_.node_file(partition));
    std::string csv = std::exchange(session_.run.StatsResultFile, {});
    if (!csv.empty()) {
      if (lack.empty()) csv = jobs::note_taken(files_, session_.job.Folder, found.account, csv);
      session_.run.StatsResultFile = csv;
      frame_.result().partition_files.push_back({number, csv});
    }
    if (lack.empty()) return;
    shortcomings.add(Shortcomings::kNotDecoded, number, lack);
  }
  if (found.has_deleted) shortcomings.keep(found.account);
}

}  // namespace qvrcom::session
