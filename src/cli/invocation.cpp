#include "cli/invocation.h"

#include <CLI/CLI.hpp>
#include <map>

#include "base/fault.h"
#include "cli/arguments.h"
#include "cli/command_context.h"
#include "cli/commands.h"
#include "requests/job_news.h"

namespace qvrcom::cli {
namespace {

const std::map<std::string, platform::Button> kAnswers{{"yes", platform::Button::kYes},
                                                       {"no", platform::Button::kNo},
                                                       {"ok", platform::Button::kOk},
                                                       {"cancel", platform::Button::kCancel}};

void add_global_options(CLI::App& app, Invocation& invocation, const std::string& version) {
  app.set_version_flag("--version", "qvrcomctl " + version);
  app.add_option_function<std::string>(
         "--answer", [&invocation](const std::string& word) { invocation.answer = kAnswers.at(word); },
         "Answer of message boxes that ask: yes, no, ok or cancel")
      ->check(CLI::IsMember({"yes", "no", "ok", "cancel"}));
}

}  // namespace

Invocation read_command_line(std::vector<std::string> arguments, const std::string& version,
                             std::ostream& out, std::ostream& err) {
  Invocation invocation;
  CLI::App app("QVRCOM+ from a shell or a script.", "qvrcomctl");
  app.require_subcommand(1);
  app.fallthrough();
  add_global_options(app, invocation, version);
  for (const auto add : {add_setup_commands, add_sites_commands, add_stats_commands, add_system_commands,
                         add_same_log_commands, add_view_command, add_jobs_commands, add_scheduler_commands})
    add(app, invocation);
  if (const auto end = read_arguments(app, std::move(arguments), out, err)) {
    invocation.command = nullptr;
    invocation.exit_code = *end;
  }
  return invocation;
}

namespace {

// What ended while nobody waited for it is told at every start, and keeps no access code.
void look_after_jobs(const Invocation& invocation, CommandContext& context) {
  requests::JobUpkeep upkeep(context.requests, context.jobs, context.machine, context.scheduler);
  const requests::LateResultsRequest late(context.requests, context.jobs);
  const auto news =
      requests::look_after_jobs(context.jobs, upkeep, late,
                                {"\"qvrcomctl jobs process\" finishes them.",
                                 "\"qvrcomctl jobs stop JOB\", where a scheduler runs, or \"qvrcomctl jobs "
                                 "remove JOB\" keeps a job from it."});
  if (!invocation.tells_late_results) return;
  for (const platform::Message& message : news)
    context.ui.show(message);
}

ExitCode carry_out(const Invocation& invocation, CommandContext& context) {
  if (invocation.needs_set_up) {
    if (const auto missing = environment::missing_folders(context.machine, context.files)) {
      context.console.tell(*missing);
      return ExitCode::kMissing;
    }
    look_after_jobs(invocation, context);
  }
  const ExitCode code = invocation.command(context);
  return context.console.deliver() ? code : ExitCode::kFailed;
}

}  // namespace

ExitCode run(const Invocation& invocation, CommandContext& context) {
  ExitCode code = ExitCode::kFailed;
  const auto fault = base::fault_of([&] { code = carry_out(invocation, context); });
  if (fault) context.console.tell(fault->description(), fault->detail());
  return code;
}

}  // namespace qvrcom::cli
