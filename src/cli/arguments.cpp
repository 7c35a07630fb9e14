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
    reason = "There is no command \"" + unknown.front() + "\"";
  return printable(reason) + "\nRun with --help for more information.\n";
}

// "--option=" is an option with an empty value; the parser would take the argument behind it for its value.
void part_empty_values(std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
    std::string& argument = arguments[i];
    if (!argument.starts_with("--") || argument.find('=') != argument.size() - 1) continue;
    argument.pop_back();
    arguments.emplace(arguments.begin() + static_cast<std::ptrdiff_t>(++i));
  }
}

}  // namespace

std::optional<ExitCode> read_arguments(CLI::App& app, std::vector<std::string> arguments, std::ostream& out,
                                       std::ostream& err) {
  app.failure_message(usage_message);
  part_empty_values(arguments);
  std::reverse(arguments.begin(), arguments.end());  // the order in which the parser takes them
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    const ExitCode code = app.exit(error, out, err) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    return Console(out, err, false).deliver() ? code : ExitCode::kFailed;
  }
  return std::nullopt;
}

void refuse_empty(CLI::Option& option, const char* reason) {
  option.check([reason](const std::string& value) { return std::string(value.empty() ? reason : ""); });
}

}  // namespace qvrcom::cli
