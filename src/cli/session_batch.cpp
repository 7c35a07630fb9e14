#include "cli/session_batch.h"

#include "cli/cancel_signals.h"

namespace qvrcom::cli {

ExitCode SessionBatch::run(const std::vector<SessionStep>& steps) {
  const CancelSignals cancel_signals([this] { sessions_.cancel(); });
  ExitCode code = ExitCode::kDone;
  for (const SessionStep& step : steps) {
    const requests::RequestResult result = run_one(step);
    const ExitCode one = code_of(result);
    if (one != ExitCode::kDone && steps.size() > 1 && !sessions_.cancelled())
      console_.tell(step.name + (result == requests::RequestResult::kDone ? ": done, but a part of it failed."
                                                                          : ": not done."));
    code = worse(code, one);
    if (sessions_.scheduler_missing()) return code;
    if (sessions_.cancelled() && &step != &steps.back()) return ExitCode::kFailed;
  }
  return code;
}

requests::RequestResult SessionBatch::run_one(const SessionStep& step) {
  ui_.begin_run();
  const requests::RequestResult result = step.run();
  console_.erase_status();
  const bool left = result != requests::RequestResult::kDone && sessions_.cancelled();
  if (left && !sessions_.scheduler_missing()) tell_cancelled();
  return result;
}

// What was asked for may be there although tidying up behind it has failed: the job would be met again.
ExitCode SessionBatch::code_of(requests::RequestResult result) const {
  if (result == requests::RequestResult::kDone)
    return ui_.has_faulted() ? ExitCode::kFailed : ExitCode::kDone;
  return sessions_.scheduler_missing() ? ExitCode::kMissing : ExitCode::kFailed;
}

// A job that the scheduler was told of goes on without its dialog; one that it never knew has no folder left.
void SessionBatch::tell_cancelled() {
  const base::JobValues& job = parts_.rules.session.job;
  const platform::Files& files = parts_.rules.files;
  const bool goes_on = !job.Folder.empty() && files.folder_exists(job.Folder);
  if (!goes_on) return console_.tell("Cancelled.");
  console_.tell("Cancelled.", "The scheduler still has the job; \"qvrcomctl jobs stop " + job.Name +
                                  "\" ends it. What it fetches stays in " + files.native(job.Folder) +
                                  "; when the job has ended, \"qvrcomctl jobs process\" takes it over.");
}

}  // namespace qvrcom::cli
