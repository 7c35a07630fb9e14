#include <CLI/CLI.hpp>
#include <QJsonArray>

#include "cli/commands.h"
#include "cli/invocation.h"
#include "cli/json_text.h"
#include "cli/site_answers.h"
#include "requests/device_requests.h"

namespace qvrcom::cli {
namespace {

SiteAnswer retrieve_same_log(CommandContext& context, const sitebook::SiteRecord& site) {
  const requests::SameLogAnswer answer = requests::SameLogRequest(context.requests).run(site);
  const std::string file = answer.file.empty() ? "" : context.files.native(answer.file);
  SiteAnswer shown{.result = answer.result};
  shown.values = {{"file", file.empty() ? QJsonValue() : json(file)}};
  if (!file.empty()) shown.rows = {{file}};
  return shown;
}

SiteAnswer view(CommandContext& context, const sitebook::SiteRecord& site, int partition) {
  const requests::ViewAnswer answer = requests::ViewRequest(context.requests).run(site, partition);
  SiteAnswer shown{.result = answer.result};
  shown.values = {{"partition", partition}, {"messages", QJsonValue()}};
  if (answer.result != requests::RequestResult::kDone) return shown;
  QJsonArray messages;
  for (const std::string& message : answer.messages) {
    messages.append(json(message));
    shown.rows.push_back({message});
  }
  shown.values["messages"] = messages;
  return shown;
}

}  // namespace

void add_same_log_commands(CLI::App& app, Invocation& invocation) {
  CLI::App* same_log = app.add_subcommand("same-log", "SAME logs");
  same_log->require_subcommand(1);
  CLI::App* retrieve = same_log->add_subcommand("retrieve", "Fetch and file it; prints the file's path");
  auto options = std::make_shared<SiteOptions>();
  options->headings = Headings::kNone;
  add_site_options(*retrieve, *options, invocation);
  retrieve->callback([options, &invocation] {
    invocation.command = [options](CommandContext& context) {
      return ask_sites(context, *options, retrieve_same_log);
    };
  });
}

void add_view_command(CLI::App& app, Invocation& invocation) {
  CLI::App* command = app.add_subcommand("view", "List the messages of a partition in the device");
  auto options = std::make_shared<SiteOptions>();
  auto partition = std::make_shared<int>(1);
  add_site_options(*command, *options, invocation);
  command->add_option("--partition", *partition, "1 to 64")->required()->check(CLI::Range(1, 64));
  command->callback([options, partition, &invocation] {
    invocation.command = [options, partition](CommandContext& context) {
      return ask_sites(context, *options,
                       [&](auto& each, const auto& site) { return view(each, site, *partition); });
    };
  });
}

}  // namespace qvrcom::cli
