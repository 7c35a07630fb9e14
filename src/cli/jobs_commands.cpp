#include <CLI/CLI.hpp>
#include <algorithm>

#include "base/fault.h"
#include "base/text.h"
#include "cli/arguments.h"
#include "cli/command_context.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "requests/job_news.h"
#include "sitebook/site_record.h"

namespace qvrcom::cli {
namespace {

constexpr const char* kNamesNoJob = "An empty text names no job";
constexpr std::size_t kProblemsTold = 20;
constexpr std::size_t kExtension = 4;  // ".sch"

std::string list_name(const std::string& file) {
  return file.substr(0, file.size() - std::min(file.size(), kExtension));
}

std::string moment_text(const std::optional<base::LocalTime>& moment) {
  return moment ? base::clock_text(*moment) : "";
}

QJsonValue moment_json(const std::optional<base::LocalTime>& moment) {
  return moment ? json_moment(*moment) : QJsonValue();
}

QJsonObject job_json(const jobs::BoardJob& job) {
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
          {"lists", lists},
          {"doubt", job.doubt.empty() ? QJsonValue() : json(job.doubt)}};
}

QJsonObject problem_json(const jobs::BoardProblem& problem) {
  return {{"file", json(problem.file)},
          {"line", static_cast<qint64>(problem.line)},
          {"text", json(problem.text)},
          {"reason", json(problem.reason)}};
}

QJsonObject unread_json(const jobs::UnreadList& list) {
  return {{"file", json(list.file)},
          {"error", json(list.fault.description())},
          {"detail", json(list.fault.detail())}};
}

template <class Values, class AsJson>
QJsonArray array_of(const Values& values, AsJson as_json) {
  QJsonArray array;
  for (const auto& value : values)
    array.append(as_json(value));
  return array;
}

std::string board_json(const jobs::Board& board) {
  QJsonArray doubtful;
  for (const jobs::BoardJob& job : board.jobs)
    if (!job.doubt.empty()) doubtful.append(json(job.job));
  return json_document(
      QJsonObject{{"jobs", array_of(board.jobs, job_json)},
                  {"problems", array_of(board.problems, problem_json)},
                  {"abandoned", array_of(board.abandoned, [](const auto& job) { return json(job); })},
                  {"doubtful", doubtful},
                  {"unread", array_of(board.unread, unread_json)}});
}

// `running` is the job that the scheduler runs now, or "".
void board_table(const jobs::Board& board, const std::string& running, std::ostream& out) {
  TextTable table(out);
  table.add({"JOB", "LISTS", "START", "SITE", "DESCRIPTION"});
  for (const jobs::BoardJob& job : board.jobs) {
    std::string lists;
    for (const std::string& file : job.lists)
      lists += (lists.empty() ? "" : ", ") + list_name(file);
    const std::string doubt = job.doubt.empty() ? "" : " (" + job.doubt + ")";
    table.add({job.job, lists, moment_text(job.start), sitebook::title_of(job.site_name, job.site_id),
               job.description + doubt});
  }
  for (const std::string& job : board.abandoned)
    table.add(
        {job, "", "", "", job == running ? "Runs, and stands in no list" : "A folder that no list names"});
}

std::vector<std::string> each_once(const std::vector<std::string>& names) {
  std::vector<std::string> once;
  for (const std::string& name : names)
    if (std::find(once.begin(), once.end(), name) == once.end()) once.push_back(name);
  return once;
}

// Fault for a name that is not among them.
std::vector<jobs::BoardJob> chosen_jobs(const std::vector<jobs::BoardJob>& jobs,
                                        const std::vector<std::string>& names) {
  std::vector<jobs::BoardJob> chosen;
  for (const std::string& name : names) {
    const auto found =
        std::find_if(jobs.begin(), jobs.end(), [&](const jobs::BoardJob& job) { return job.job == name; });
    if (found == jobs.end())
      throw base::Fault("No such job", "\"" + name + "\" is no finished job that waits to be processed.");
    chosen.push_back(*found);
  }
  return chosen;
}

// The first of them, and how many more there are.
void tell_problems(const std::vector<jobs::BoardProblem>& problems, Console& console) {
  const std::size_t told = std::min(problems.size(), kProblemsTold);
  for (std::size_t i = 0; i < told; ++i) {
    const jobs::BoardProblem& problem = problems[i];
    console.tell(problem.file + ", line " + std::to_string(problem.line) + ": " + problem.reason,
                 problem.text);
  }
  if (told < problems.size())
    console.tell("... and " + std::to_string(problems.size() - told) + " more.",
                 "\"qvrcomctl jobs list --json\" tells all of them.");
}

ExitCode list(CommandContext& context, bool as_json) {
  const jobs::Board board = context.jobs.read();
  for (const jobs::UnreadList& list : board.unread)
    context.ui.show(requests::message_of(list));  // which prints no message a second time
  const ExitCode code = board.unread.empty() ? ExitCode::kDone : ExitCode::kFailed;
  if (as_json) {
    context.console.out() << board_json(board);
    return code;
  }
  const auto status = context.scheduler.status().status;
  board_table(board, status ? status->running_job : std::string(), context.console.out());
  tell_problems(board.problems, context.console);
  return code;
}

// Without names: every job that waits for it.
ExitCode process(CommandContext& context, const std::vector<std::string>& names) {
  requests::LateResultsRequest request(context.requests, context.jobs);
  std::vector<jobs::BoardJob> jobs = request.waiting();
  if (!names.empty()) jobs = chosen_jobs(jobs, names);
  if (jobs.empty()) context.console.tell("No finished job waits to be processed.");
  std::vector<SessionStep> steps;
  for (const jobs::BoardJob& job : jobs) {
    steps.push_back({job.job, [&context, &request, job] {
                       const requests::LateResultsAnswer answer = request.process(job);
                       context.console.erase_status();
                       for (const std::string& file : answer.files)
                         context.console.print_path(context.files.native(file));
                       return answer.result;
                     }});
  }
  return context.sessions.run(steps);
}

using Removal = requests::JobUpkeep::Removal;

// "" when the job's line stands in none of the scheduler's lists.
std::string lists_text(const std::vector<std::string>& lists) {
  std::string names;
  for (const std::string& list : lists)
    names += (names.empty() ? "" : ", ") + list;
  return names.empty() ? "" : " In " + names + " its line stays until the scheduler is started next.";
}

ExitCode remove(CommandContext& context, const std::vector<std::string>& names) {
  requests::JobUpkeep upkeep(context.requests, context.jobs, context.machine, context.scheduler);
  ExitCode code = ExitCode::kDone;
  for (const std::string& name : names) {
    const Removal removal = upkeep.remove(name);
    const std::string said = name + requests::words_of(removal.outcome);
    if (!requests::is_removed(removal.outcome)) {
      code = ExitCode::kFailed;
      context.console.tell(said);
      continue;
    }
    context.console.print(said + lists_text(removal.lists));
    for (const std::string& file : removal.results)
      context.console.print(name + ": what had come of it stays, " + context.files.native(file));
  }
  return code;
}

void tell_waiting(CommandContext& context, const std::vector<std::string>& jobs) {
  if (jobs.empty()) return;
  const std::string who =
      jobs.size() == 1 ? "1 finished job waits" : std::to_string(jobs.size()) + " finished jobs wait";
  context.console.print(who + " for \"qvrcomctl jobs process\".");
}

ExitCode clean(CommandContext& context) {
  requests::JobUpkeep upkeep(context.requests, context.jobs, context.machine, context.scheduler);
  const requests::JobUpkeep::Cleaning cleaning = upkeep.clean();
  if (!cleaning.done) return ExitCode::kFailed;
  for (const std::string& job : cleaning.jobs)
    context.console.print(job + ": its folder is removed.");
  for (const requests::JobUpkeep::EndedLine& line : cleaning.lines)
    context.console.print(line.job + ": it has gone; its line is dropped." + lists_text(line.lists));
  for (const requests::JobUpkeep::StuckFolder& each : cleaning.stuck)
    context.console.tell(each.job + ": its folder cannot be removed: " + each.fault.description(),
                         each.fault.detail());
  tell_waiting(context, cleaning.waiting);
  context.console.print("Logs older than " + std::to_string(cleaning.log_days) +
                        " days: " + std::to_string(cleaning.logs) + " removed.");
  return cleaning.stuck.empty() ? ExitCode::kDone : ExitCode::kFailed;
}

struct StopText {
  platform::StopOutcome outcome;
  ExitCode code;
  const char* text;  // after the job's name
};

constexpr StopText kStopTexts[] = {
    {platform::StopOutcome::kStopped, ExitCode::kDone, ": its session is ended."},
    {platform::StopOutcome::kTakenOut, ExitCode::kDone, ": it will not be run."},
    {platform::StopOutcome::kUnknownJob, ExitCode::kFailed, ": no such job waits or runs."},
    {platform::StopOutcome::kNotRunning, ExitCode::kMissing, ": no scheduler is running."},
    {platform::StopOutcome::kSilent, ExitCode::kMissing, ": a scheduler is running, but it does not answer."},
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

  using NamesCommand = ExitCode (*)(CommandContext&, const std::vector<std::string>&);
  const auto add_with_names = [&](const char* name, const char* help, NamesCommand run) {
    auto names = std::make_shared<std::vector<std::string>>();
    CLI::App* command = jobs->add_subcommand(name, help);
    command->callback([names, run, &invocation] {
      invocation.tells_late_results = false;
      invocation.command = [names, run](CommandContext& context) { return run(context, each_once(*names)); };
    });
    CLI::Option* option = command->add_option("JOB", *names, "A job's name; may repeat");
    refuse_empty(*option, kNamesNoJob);
    return option;
  };
  add_with_names("process", "Take over what finished jobs have fetched; without names, of all", process);
  add_with_names("remove", "Remove the folder of a job that has ended or waits", remove)->required();
  jobs->add_subcommand("clean", "Remove folders and lines of jobs that have gone, and old logs")
      ->callback([&invocation] {
        invocation.tells_late_results = false;
        invocation.command = clean;
      });

  auto job = std::make_shared<std::string>();
  CLI::App* stop_command = jobs->add_subcommand("stop", "End a job's session, or keep it from being run");
  refuse_empty(*stop_command->add_option("JOB", *job, "The job's name")->required(), kNamesNoJob);
  stop_command->callback([job, &invocation] {
    invocation.tells_late_results = false;
    invocation.command = [job](CommandContext& context) { return stop(context, *job); };
  });
}

}  // namespace qvrcom::cli
