#include "cli/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/console.h"
#include "cli/printable.h"

namespace qvrcom::cli {
namespace {

// A word that is no command is named, rather than the command that is missing in its place.
std::string usage_message(const CLI::App* app, const CLI::Error& error) {
  std::string reason = error.what();
  const auto unknown = app->remaining(true);
  if (error.get_name() == "RequiredError" && !unknown.empty())
    reason = "There is no command \"" + printable(unknown.front()) + "\"";
  return reason + "\nRun with --help for more information.\n";
}

}  // namespace

std::optional<ExitCode> read_arguments(CLI::App& app, std::vector<std::string> arguments, std::ostream& out,
                                       std::ostream& err) {
  app.failure_message(usage_message);
  std::reverse(arguments.begin(), arguments.end());  // the order in which the parser takes them
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    const ExitCode code = app.exit(error, out, err) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    return Console(out, err, false).deliver() ? code : ExitCode::kFailed;
  }
  return std::nullopt;
}

}  // namespace qvrcom::cli
