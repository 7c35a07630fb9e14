#include <CLI/CLI.hpp>

#include "base/fault.h"
#include "cli/arguments.h"
#include "cli/command_context.h"
#include "cli/commands.h"
#include "cli/csv_view.h"
#include "cli/partition_list.h"
#include "requests/device_requests.h"
#include "requests/statistics_request.h"

namespace qvrcom::cli {
namespace {

constexpr const char* kEveryPartition = "1-64";

struct SessionOptions {
  std::vector<std::string> sites;
  std::string partitions;
  bool all_partitions = false;
  bool reset = false;  // of a retrieval: afterwards
  bool force = false;  // all partitions of a device that is not meant for it
};

// Prints the native path of each file that a session leaves.
class PrintedStatistics : public requests::StatisticsDisplay {
 public:
  PrintedStatistics(Console& console, const platform::Files& files) : console_(console), files_(files) {}
  void ShowStatistics(const std::string& csvFile) override { console_.print_path(files_.native(csvFile)); }

 private:
  Console& console_;
  const platform::Files& files_;
};

requests::RequestResult run_order(CommandContext& context, const requests::StatisticsOrder& order) {
  PrintedStatistics printed(context.console, context.files);
  return requests::StatisticsRequest(context.requests, printed)
      .run(sitebook::session_text(order.site, &sitebook::SiteRecord::card_type), order);
}

ExitCode run_sessions(CommandContext& context, const SessionOptions& options, const char* operation) {
  std::vector<SessionStep> steps;
  const std::vector<int> partitions = parse_partitions(options.partitions).value();
  for (const sitebook::SiteRecord& site : context.sites.find(options.sites)) {
    for (const int partition : partitions) {
      const requests::StatisticsOrder order{site, partition, operation};
      steps.push_back({sitebook::title_of(site) + ", partition " + std::to_string(partition),
                       [&context, order] { return run_order(context, order); }});
    }
  }
  return context.sessions.run(steps);
}

requests::RequestResult run_all_partitions(CommandContext& context, const sitebook::SiteRecord& site,
                                           bool force) {
  const auto answer = requests::AllPartitionsRequest(context.requests).run(site, force);
  context.console.erase_status();
  for (const session::PartitionFile& each : answer.files)
    context.console.print_path(context.files.native(each.file));
  return answer.result;
}

// One job a site.
ExitCode retrieve_reset_all(CommandContext& context, const SessionOptions& options) {
  std::vector<SessionStep> steps;
  for (const sitebook::SiteRecord& site : context.sites.find(options.sites)) {
    const sitebook::SiteRecord row = site;
    const bool force = options.force;
    steps.push_back({sitebook::title_of(site),
                     [&context, row, force] { return run_all_partitions(context, row, force); }});
  }
  return context.sessions.run(steps);
}

ExitCode retrieve(CommandContext& context, SessionOptions options) {
  if (options.all_partitions && options.reset) return retrieve_reset_all(context, options);
  if (options.all_partitions) options.partitions = kEveryPartition;
  return run_sessions(
      context, options,
      options.reset ? session::operation::kRetrieveResetStatistics : session::operation::kRetrieveStatistics);
}

std::string check_partitions(const std::string& text) {
  if (parse_partitions(text)) return {};
  return "\"" + text + "\" is no list of partitions: 3, 1-8 or 1,4,7, each from 1 to 64";
}

// Returns the option of the partitions.
CLI::Option* add_session_options(CLI::App& command, SessionOptions& options, Invocation& invocation) {
  command
      .add_option("--site", options.sites, "Key, identifier or \"name - identifier\" of a site; may repeat")
      ->required()
      ->allow_extra_args(false);
  command.add_flag("--wait", invocation.wait, "Wait for another program's session to end");
  return command.add_option("--partition", options.partitions, "Partitions: 3, 1-8 or 1,4,7")
      ->check(CLI::Validator(check_partitions, "LIST"));
}

void add_retrieve(CLI::App& stats, Invocation& invocation) {
  CLI::App* command = stats.add_subcommand("retrieve", "Fetch statistics; prints the path of each CSV file");
  const auto options = std::make_shared<SessionOptions>();
  CLI::Option* listed = add_session_options(*command, *options, invocation);
  CLI::Option* all = command->add_flag("--all-partitions", options->all_partitions,
                                       "All 64; with --reset in one job, for older firmware");
  all->excludes(listed);
  CLI::Option* reset =
      command->add_flag("--reset", options->reset, "Start the device's counters anew afterwards");
  command->add_flag("--force", options->force, "With both: for any firmware")->needs(all)->needs(reset);
  command->callback([options, &invocation] {
    if (options->partitions.empty() && !options->all_partitions)
      throw CLI::RequiredError("--partition or --all-partitions");
    invocation.command = [options](CommandContext& context) { return retrieve(context, *options); };
  });
}

void add_reset(CLI::App& stats, Invocation& invocation) {
  CLI::App* reset = stats.add_subcommand("reset", "Start the device's counters anew");
  const auto options = std::make_shared<SessionOptions>();
  add_session_options(*reset, *options, invocation)->required();
  reset->callback([options, &invocation] {
    invocation.command = [options](CommandContext& context) {
      return run_sessions(context, *options, session::operation::kResetStatistics);
    };
  });
}

struct ShowOptions {
  std::string path;
  std::string table;  // name or number; empty for all
  bool json = false;
};

// Whether every row could be shown as its writer meant it.
bool report_damage(const csv::CsvIndex& index, const std::string& path, Console& console) {
  std::string detail;
  for (const std::string& each : csv::damage_texts(index))
    detail += each + "\n";
  if (index.rows_left_out()) detail += "The file has more rows than can be shown.\n";
  if (!detail.empty()) console.tell("\"" + path + "\" is damaged.", detail);
  return detail.empty();
}

ExitCode show(CommandContext& context, const ShowOptions& options) {
  csv::CsvFile file(context.byte_sources.open(context.files.from_native(options.path)));
  file.index().index_all();
  file.find_tables();
  const csv::Table* chosen = nullptr;
  if (!options.table.empty()) {
    const FoundTable found = find_table(file, options.table);
    if (!found.remark.empty()) context.console.tell(found.remark, "A name goes before a number.");
    chosen = &found.table;
  }
  if (options.json) {
    write_csv_json(file, chosen, options.path, context.console.out());
  } else {
    write_csv_text(file, chosen, context.console.out());
  }
  const bool whole = report_damage(file.index(), options.path, context.console);
  return whole ? ExitCode::kDone : ExitCode::kFailed;
}

void add_show(CLI::App& stats, Invocation& invocation) {
  CLI::App* command = stats.add_subcommand("show", "Write the tables of a statistics file");
  const auto options = std::make_shared<ShowOptions>();
  refuse_empty(*command->add_option("FILE", options->path, "A CSV file")->required(), kNamesNoFile);
  CLI::Option* table =
      command->add_option("--table", options->table,
                          "One table alone: its name or, when no table is called so, its number from 1");
  refuse_empty(*table, "An empty text names no table. Leave the option out for all of them");
  command->add_flag("--json", options->json, "As a JSON object");
  command->callback([options, &invocation] {
    invocation.needs_set_up = false;
    invocation.command = [options](CommandContext& context) { return show(context, *options); };
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
