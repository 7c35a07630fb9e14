#include <CLI/CLI.hpp>
#include <algorithm>

#include "base/text.h"
#include "cli/command_context.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"

namespace qvrcom::cli {
namespace {

constexpr std::size_t kExtension = 4;  // ".sch"

std::string list_name(const std::string& file) {
  return file.substr(0, file.size() - std::min(file.size(), kExtension));
}

std::string moment_text(const std::optional<base::LocalTime>& moment) {
  return moment ? base::index_stamp(*moment) : "";
}

QJsonValue moment_json(const std::optional<base::LocalTime>& moment) {
  return moment ? json_moment(*moment) : QJsonValue();
}

QJsonObject job_json(const results::BoardJob& job) {
  QJsonArray lists;
  for (const std::string& file : job.lists)
    lists.append(json(list_name(file)));
  return {{"job", json(job.job)},
          {"description", json(job.description)},
          {"site-name", json(job.site_name)},
          {"id", json(job.site_id)},
          {"site-id", json(job.device_id)},
          {"start", moment_json(job.start)},
          {"created", moment_json(job.created)},
          {"lists", lists}};
}

QJsonObject problem_json(const results::BoardProblem& problem) {
  return {{"file", json(problem.file)},
          {"line", static_cast<qint64>(problem.line)},
          {"text", json(problem.text)},
          {"reason", json(problem.reason)}};
}

std::string board_json(const results::Board& board) {
  QJsonArray jobs;
  for (const results::BoardJob& job : board.jobs)
    jobs.append(job_json(job));
  QJsonArray problems;
  for (const results::BoardProblem& problem : board.problems)
    problems.append(problem_json(problem));
  return json_document(QJsonObject{{"jobs", jobs}, {"problems", problems}});
}

void board_table(const results::Board& board, std::ostream& out) {
  TextTable table(out);
  table.add({"JOB", "LISTS", "START", "SITE", "DESCRIPTION"});
  for (const results::BoardJob& job : board.jobs) {
    std::string lists;
    for (const std::string& file : job.lists)
      lists += (lists.empty() ? "" : ", ") + list_name(file);
    table.add({job.job, lists, moment_text(job.start), job.site_name + " - " + job.site_id, job.description});
  }
}

ExitCode list(CommandContext& context, bool as_json) {
  const results::Board board = context.jobs.read();
  if (as_json) {
    context.console.out() << board_json(board);
    return ExitCode::kDone;
  }
  board_table(board, context.console.out());
  for (const results::BoardProblem& problem : board.problems)
    context.console.tell(problem.file + ", line " + std::to_string(problem.line) + ": " + problem.reason,
                         problem.text);
  return ExitCode::kDone;
}

struct StopText {
  platform::StopOutcome outcome;
  ExitCode code;
  const char* text;  // after the job's name
};

constexpr StopText kStopTexts[] = {
    {platform::StopOutcome::kStopped, ExitCode::kDone, ": its session was ended."},
    {platform::StopOutcome::kTakenOut, ExitCode::kDone, ": it will not be run."},
    {platform::StopOutcome::kUnknownJob, ExitCode::kFailed, ": no such job waits or runs."},
    {platform::StopOutcome::kNotReachable, ExitCode::kMissing, ": no scheduler answers."},
};

ExitCode stop(CommandContext& context, const std::string& job) {
  const platform::StopOutcome outcome = context.scheduler.stop_job(job);
  const StopText& text = *std::find_if(std::begin(kStopTexts), std::end(kStopTexts),
                                       [&](const StopText& each) { return each.outcome == outcome; });
  if (text.code == ExitCode::kDone) {
    context.console.print(job + text.text);
  } else {
    context.console.tell(job + text.text);
  }
  return text.code;
}

}  // namespace

void add_jobs_commands(CLI::App& app, Invocation& invocation) {
  CLI::App* jobs = app.add_subcommand("jobs", "Jobs of the scheduler");
  jobs->require_subcommand(1);

  auto as_json = std::make_shared<bool>(false);
  CLI::App* list_command = jobs->add_subcommand("list", "Show job index, result lists and pending lists");
  list_command->add_flag("--json", *as_json, "As a JSON object");
  list_command->callback([as_json, &invocation] {
    invocation.command = [as_json](CommandContext& context) { return list(context, *as_json); };
  });

  auto job = std::make_shared<std::string>();
  CLI::App* stop_command = jobs->add_subcommand("stop", "End a job's session, or keep it from being run");
  stop_command->add_option("JOB", *job, "The job's name")->required();
  stop_command->callback([job, &invocation] {
    invocation.command = [job](CommandContext& context) { return stop(context, *job); };
  });
}

}  // namespace qvrcom::cli
