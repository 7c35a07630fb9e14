#pragma once

#include <QJsonObject>
#include <functional>
#include <string>
#include <vector>

#include "cli/command_context.h"

namespace CLI {
class App;
}

namespace qvrcom::cli {

struct Invocation;

// How the answers of several sites stand among each other.
enum class Headings { kNone, kSites };

struct SiteOptions {
  std::vector<std::string> sites;
  bool as_json = false;
  Headings headings = Headings::kSites;  // of the text form, with several sites
};

// A text of any length, written line by line.
struct LongText {
  std::string key = {};  // in JSON, where it is an array of the lines; "" when there is no text
  std::string text = {};
  bool for_people = true;  // written without --json, too
};

// What a site answered: rows of cells for people, values for programs, lines for both. Values are there after
// a failure, too.
struct SiteAnswer {
  requests::RequestResult result = requests::RequestResult::kNotDone;
  std::vector<std::vector<std::string>> rows = {};
  QJsonObject values = {};
  LongText lines = {};
  std::function<void(bool whole)> written = {};  // told whether all of it has gone to standard output
};

using AskSite = std::function<SiteAnswer(CommandContext&, const sitebook::SiteRecord&)>;

// --site, which may repeat, --wait, and --json.
void add_site_options(CLI::App& command, SiteOptions& options, Invocation& invocation);

// Asks each site in a session of its own and writes what it answers as it comes. JSON is one array of
// objects, one for each site that was asked.
ExitCode ask_sites(CommandContext& context, const SiteOptions& options, const AskSite& ask);

}  // namespace qvrcom::cli
