#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/command_context.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "environment/names.h"

namespace qvrcom::cli {
namespace {

constexpr std::chrono::milliseconds kLook{100};
constexpr int kLooks = 100;      // 10 s for the scheduler to come up
constexpr int kSilentLook = 10;  // a look without an answer may take seconds: as many looks is it worth

struct StateName {
  protocol::JobState state;
  const char* name;
};

constexpr StateName kStateNames[] = {{protocol::JobState::kWaiting, "waiting"},
                                     {protocol::JobState::kRunning, "running"},
                                     {protocol::JobState::kLeftAlone, "left alone"},
                                     {protocol::JobState::kFinished, "finished"},
                                     {protocol::JobState::kUnlisted, "finished, not listed yet"},
                                     {protocol::JobState::kDamaged, "damaged"}};

const char* name_of(protocol::JobState state) {
  return std::find_if(std::begin(kStateNames), std::end(kStateNames),
                      [&](const StateName& each) { return each.state == state; })
      ->name;
}

// A scheduler that has not answered, in its own words: there is none, or it is busy or hangs.
ExitCode no_answer(CommandContext& context, platform::Reach reach) {
  if (reach == platform::Reach::kSilent)
    context.console.tell("A scheduler is running, but it does not answer.",
                         "Try again in a moment. If it stays so, end the process JobPilot.");
  else
    context.console.tell("No scheduler is running.", "\"qvrcomctl scheduler start\" starts it.");
  return ExitCode::kMissing;
}

std::string why_silent(const platform::Programs& programs, const std::string& path) {
  const std::string words = programs.said();
  return words.empty() ? programs.native(path) + " did not answer."
                       : programs.native(path) + " says: " + words;
}

ExitCode start(CommandContext& context) {
  const std::string path = context.folders.GetAppPath() + environment::kJobPilotProgram;
  std::string reason;
  for (int look = 0; look < kLooks;) {
    const platform::StatusAnswer answer = context.scheduler.status();
    if (answer.status) {
      context.console.print("The scheduler is running (process " + std::to_string(answer.status->process) +
                            ").");
      return ExitCode::kDone;
    }
    const bool silent = answer.reach == platform::Reach::kSilent;
    if (look == 0 && silent) return no_answer(context, answer.reach);
    if (look == 0) reason = context.programs.start_hidden(path);
    if (!reason.empty()) break;
    look += silent ? kSilentLook : 1;
    context.ui.pump_events();
    context.clock.sleep(kLook);
  }
  context.console.tell("The scheduler did not start.",
                       reason.empty() ? why_silent(context.programs, path) : reason);
  return ExitCode::kMissing;
}

std::string status_json(const protocol::SchedulerStatus& status) {
  QJsonArray jobs;
  for (const protocol::ScheduledJob& job : status.jobs)
    jobs.append(QJsonObject{{"job", json(job.name)},
                            {"description", json(job.description)},
                            {"state", name_of(job.state)},
                            {"reason", job.reason.empty() ? QJsonValue() : json(job.reason)}});
  return json_document(
      QJsonObject{{"version", json(status.version)},
                  {"process", static_cast<qint64>(status.process)},
                  {"running-job", status.running_job.empty() ? QJsonValue() : json(status.running_job)},
                  {"step", status.running_job.empty() ? QJsonValue() : json(status.step)},
                  {"bytes-done", static_cast<qint64>(status.bytes_done)},
                  {"bytes-hinted", static_cast<qint64>(status.bytes_hinted)},
                  {"jobs", jobs},
                  {"jobs-left-out", static_cast<qint64>(status.jobs_left_out)}});
}

void status_text(const protocol::SchedulerStatus& status, Console& console) {
  console.print("JobPilot " + status.version + ", process " + std::to_string(status.process));
  if (!status.running_job.empty())
    console.print(status.running_job + ": " + status.step + ", " + std::to_string(status.bytes_done) +
                  " bytes");
  TextTable table(console.out());
  for (const protocol::ScheduledJob& job : status.jobs)
    table.add({job.name, name_of(job.state), job.reason.empty() ? job.description : job.reason});
  if (status.jobs_left_out > 0) table.add({"... and " + std::to_string(status.jobs_left_out) + " more"});
}

ExitCode show_status(CommandContext& context, bool as_json) {
  const auto [reach, status] = context.scheduler.status();
  if (!status) return no_answer(context, reach);
  if (as_json) {
    context.console.out() << status_json(*status);
  } else {
    status_text(*status, context.console);
  }
  return ExitCode::kDone;
}

ExitCode stop(CommandContext& context) {
  const platform::Reach reach = context.scheduler.stop();
  if (reach != platform::Reach::kAnswered) return no_answer(context, reach);
  context.console.print("The scheduler has been stopped.");
  return ExitCode::kDone;
}

}  // namespace

void add_scheduler_commands(CLI::App& app, Invocation& invocation) {
  CLI::App* scheduler = app.add_subcommand("scheduler", "The scheduler program JobPilot");
  scheduler->require_subcommand(1);
  scheduler->add_subcommand("start", "Start it when it is not running")->callback([&invocation] {
    invocation.command = start;
  });
  auto as_json = std::make_shared<bool>(false);
  CLI::App* status = scheduler->add_subcommand("status", "Say what it does");
  status->add_flag("--json", *as_json, "As a JSON object");
  status->callback([as_json, &invocation] {
    invocation.command = [as_json](CommandContext& context) { return show_status(context, *as_json); };
  });
  scheduler->add_subcommand("stop", "End its session, list the job as cancelled, end the program")
      ->callback([&invocation] { invocation.command = stop; });
}

}  // namespace qvrcom::cli
