#include "cli/site_answers.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>

#include "cli/invocation.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "control/site_list.h"

namespace qvrcom::cli {
namespace {

const char* word_of(control::RequestResult result) {
  switch (result) {
    case control::RequestResult::kDone:
      return "done";
    case control::RequestResult::kBusy:
      return "busy";
    case control::RequestResult::kNotDone:
      break;
  }
  return "failed";
}

QJsonObject json_of(const sitebook::SiteRecord& site, const SiteAnswer& answer) {
  QJsonObject object = answer.values;
  object["site-id"] = site.site_id;
  object["name"] = json_or_null(site.name);
  object["id"] = json_or_null(site.identifier);
  object["result"] = word_of(answer.result);
  return object;
}

void write_text(Console& console, const std::string& heading, const SiteAnswer& answer) {
  if (answer.rows.empty()) return;
  console.erase_status();
  if (!heading.empty()) console.print(heading);
  TextTable table(console.out());
  for (const auto& row : answer.rows)
    table.add(row);
}

}  // namespace

void add_site_options(CLI::App& command, SiteOptions& options, Invocation& invocation) {
  command
      .add_option("--site", options.sites, "Key, identifier or \"name - identifier\" of a site; may repeat")
      ->required()
      ->allow_extra_args(false);
  command.add_flag("--wait", invocation.wait, "Wait for another program's session to end");
  command.add_flag("--json", options.as_json, "As a JSON array");
}

ExitCode ask_sites(CommandContext& context, const SiteOptions& options, const AskSite& ask) {
  const std::vector<sitebook::SiteRecord> sites = context.sites.find(options.sites);
  const bool headed = sites.size() > 1 && options.headings == Headings::kSites;
  QJsonArray array;
  std::vector<SessionStep> steps;
  for (const sitebook::SiteRecord& site : sites) {
    steps.push_back({sitebook::title_of(site), [&, headed] {
                       const SiteAnswer answer = ask(context, control::site_row(site));
                       array.append(json_of(site, answer));
                       if (!options.as_json)
                         write_text(context.console, headed ? sitebook::title_of(site) + ":" : "", answer);
                       return answer.result;
                     }});
  }
  const ExitCode code = context.sessions.run(steps);
  if (options.as_json) context.console.out() << json_document(array);
  return code;
}

}  // namespace qvrcom::cli
