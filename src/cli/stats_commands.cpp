#include <CLI/CLI.hpp>

#include "base/fault.h"
#include "cli/command_context.h"
#include "cli/commands.h"
#include "cli/csv_view.h"
#include "cli/partition_list.h"
#include "cli/site_keys.h"
#include "control/site_list.h"

namespace qvrcom::cli {
namespace {

struct SessionOptions {
  std::vector<std::string> sites;
  std::string partitions;
  bool reset = false;  // of a retrieval: afterwards
};

ExitCode run_sessions(CommandContext& context, const SessionOptions& options, const char* operation) {
  std::vector<control::StatisticsOrder> orders;
  const std::vector<int> partitions = parse_partitions(options.partitions).value();
  for (const sitebook::SiteRecord& site : find_sites(context.sites, options.sites))
    for (const int partition : partitions)
      orders.push_back({control::site_row(site), partition, operation});
  return context.statistics.run(orders);
}

std::string check_partitions(const std::string& text) {
  if (parse_partitions(text)) return {};
  return "\"" + text + "\" is no list of partitions: 3, 1-8 or 1,4,7, each from 1 to 64";
}

std::shared_ptr<SessionOptions> add_session_options(CLI::App& command, Invocation& invocation) {
  auto options = std::make_shared<SessionOptions>();
  command
      .add_option("--site", options->sites, "Key, identifier or \"name - identifier\" of a site; may repeat")
      ->required()
      ->allow_extra_args(false);
  command.add_option("--partition", options->partitions, "Partitions: 3, 1-8 or 1,4,7")
      ->required()
      ->check(CLI::Validator(check_partitions, "LIST"));
  command.add_flag("--wait", invocation.wait, "Wait for another program's session to end");
  return options;
}

void add_retrieve(CLI::App& stats, Invocation& invocation) {
  CLI::App* retrieve = stats.add_subcommand("retrieve", "Fetch statistics; prints the path of each CSV file");
  const auto options = add_session_options(*retrieve, invocation);
  retrieve->add_flag("--reset", options->reset, "Start the device's counters anew afterwards");
  retrieve->callback([options, &invocation] {
    invocation.command = [options](CommandContext& context) {
      return run_sessions(context, *options,
                          options->reset ? session::operation::kRetrieveResetStatistics
                                         : session::operation::kRetrieveStatistics);
    };
  });
}

void add_reset(CLI::App& stats, Invocation& invocation) {
  CLI::App* reset = stats.add_subcommand("reset", "Start the device's counters anew");
  const auto options = add_session_options(*reset, invocation);
  reset->callback([options, &invocation] {
    invocation.command = [options](CommandContext& context) {
      return run_sessions(context, *options, session::operation::kResetStatistics);
    };
  });
}

ExitCode show(CommandContext& context, const std::string& path, bool as_json) {
  csv::CsvFile file(context.byte_sources.open(path));
  file.index().index_all();
  if (as_json) {
    write_csv_json(file, path, context.console.out());
  } else {
    write_csv_text(file, context.console.out());
  }
  return ExitCode::kDone;
}

void add_show(CLI::App& stats, Invocation& invocation) {
  CLI::App* command = stats.add_subcommand("show", "Write a statistics file as a table");
  auto path = std::make_shared<std::string>();
  auto as_json = std::make_shared<bool>(false);
  command->add_option("FILE", *path, "A CSV file")->required();
  command->add_flag("--json", *as_json, "As a JSON object");
  command->callback([path, as_json, &invocation] {
    invocation.needs_set_up = false;
    invocation.command = [path, as_json](CommandContext& context) { return show(context, *path, *as_json); };
  });
}

}  // namespace

void add_stats_commands(CLI::App& app, Invocation& invocation) {
  CLI::App* stats = app.add_subcommand("stats", "Statistics of a device's partitions");
  stats->require_subcommand(1);
  add_retrieve(*stats, invocation);
  add_reset(*stats, invocation);
  add_show(*stats, invocation);
}

}  // namespace qvrcom::cli
