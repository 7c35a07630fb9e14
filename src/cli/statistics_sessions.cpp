#include "cli/statistics_sessions.h"

#include "cli/cancel_signals.h"

namespace qvrcom::cli {
namespace {

std::string sentence_of(const control::StatisticsOrder& order, const char* rest) {
  return order.site[control::SiteColumn::kUserDefinedSiteName] + " - " +
         order.site[control::SiteColumn::kUserDefinedSiteID] + ", partition " +
         std::to_string(order.partition) + rest;
}

}  // namespace

ExitCode StatisticsSessions::run(const std::vector<control::StatisticsOrder>& orders) {
  const CancelSignals cancel_signals([this] { sessions_.cancel(); });
  ExitCode code = ExitCode::kDone;
  for (const control::StatisticsOrder& order : orders) {
    const ExitCode one = run_one(order);
    if (one != ExitCode::kDone && orders.size() > 1 && !sessions_.cancelled())
      console_.tell(sentence_of(order, ": not done."));
    code = worse(code, one);
    if (sessions_.scheduler_missing()) return code;
    if (sessions_.cancelled() && &order != &orders.back()) return ExitCode::kFailed;
  }
  return code;
}

ExitCode StatisticsSessions::run_one(const control::StatisticsOrder& order) {
  ui_.begin_run();
  const control::RequestResult result =
      request_.run(order.site[control::SiteColumn::kControlCardType], order);
  console_.erase_status();
  if (result == control::RequestResult::kDone) return ExitCode::kDone;
  if (sessions_.scheduler_missing()) return ExitCode::kMissing;
  if (sessions_.cancelled()) tell_cancelled();
  return ExitCode::kFailed;
}

// A job that the scheduler was told of goes on without its dialog; one that it never knew has no folder left.
void StatisticsSessions::tell_cancelled() {
  const base::JobValues& job = parts_.rules.session.job;
  const bool goes_on = !job.Folder.empty() && parts_.rules.files.folder_exists(job.Folder);
  console_.tell(
      "Cancelled.",
      goes_on ? "The scheduler still has the job; \"qvrcomctl jobs stop " + job.Name + "\" ends it." : "");
}

void StatisticsSessions::ShowStatistics(const std::string& csvFile) {
  console_.print(parts_.rules.files.native(csvFile));
}

}  // namespace qvrcom::cli
