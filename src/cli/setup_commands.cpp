#include <CLI/CLI.hpp>
#include <utility>

#include "cli/arguments.h"
#include "cli/command_context.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "sitebook/sample_site.h"

namespace qvrcom::cli {
namespace {

struct SetupOptions {
  bool sample = false;
  std::string address = "127.0.0.1:2121";
  std::string access_code = "sample";
};

ExitCode set_up(CommandContext& context, const SetupOptions& options) {
  for (const std::string& line : context.set_up.run(context.proposed_folders))
    context.console.print(line);
  if (!options.sample) return ExitCode::kDone;
  const std::string line = sitebook::add_sample_site(context.sites, options.address, options.access_code);
  if (!line.empty()) context.console.print(line);
  return ExitCode::kDone;
}

struct FolderRow {
  const char* key;
  const char* label;
  std::string (*path)(const environment::FilesAndFolders&);
};

const FolderRow kFolders[] = {
    {"application", "Application", [](const auto& folders) { return folders.GetAppPath(); }},
    {"application-data", "Application data", [](const auto& folders) { return folders.GetAppDataRoot(); }},
    {"database", "Database", [](const auto& folders) { return folders.GetDatabaseFolder(); }},
    {"documents", "Documents", [](const auto& folders) { return folders.GetAppDocsRoot(); }},
    {"logs", "Logs", [](const auto& folders) { return folders.GetLogsFolder(); }},
    {"messages", "Messages", [](const auto& folders) { return folders.GetMsgsFolder({}); }},
    {"same-logs", "SAME logs", [](const auto& folders) { return folders.GetSAMELogsFolder(); }},
    {"scheduler", "Scheduler", [](const auto& folders) { return folders.GetSchedulerFolder(); }},
    {"statistics", "Statistics", [](const auto& folders) { return folders.GetStatsFolder({}); }},
};

ExitCode list_folders(CommandContext& context, bool as_json) {
  QJsonObject object;
  TextTable table(context.console.out());
  for (const FolderRow& row : kFolders) {
    const std::string path = context.files.native(row.path(context.folders));
    if (as_json) {
      object[row.key] = json(path);
    } else {
      table.add({row.label, path});
    }
  }
  if (as_json) context.console.out() << json_document(object);
  return ExitCode::kDone;
}

}  // namespace

void add_setup_commands(CLI::App& app, Invocation& invocation) {
  auto options = std::make_shared<SetupOptions>();
  CLI::App* setup = app.add_subcommand("setup", "Make folders, configuration, database and seed rows");
  CLI::Option* sample =
      setup->add_flag("--sample", options->sample, "Also add the site \"USA_Office - 101\"");
  CLI::Option* address = setup->add_option("--sample-address", options->address, "Its LAN address");
  refuse_empty(*address->capture_default_str()->needs(sample), "An empty text is no address");
  setup->add_option("--sample-access-code", options->access_code, "Its access code")
      ->capture_default_str()
      ->needs(sample);
  setup->callback([options, &invocation] {
    invocation.needs_set_up = false;
    invocation.command = [options](CommandContext& context) { return set_up(context, *options); };
  });

  auto as_json = std::make_shared<bool>(false);
  CLI::App* folders = app.add_subcommand("folders", "Say where everything lies");
  folders->add_flag("--json", *as_json, "As a JSON object");
  folders->callback([as_json, &invocation] {
    invocation.command = [as_json](CommandContext& context) { return list_folders(context, *as_json); };
  });
}

}  // namespace qvrcom::cli
