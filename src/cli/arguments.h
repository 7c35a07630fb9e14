#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "cli/exit_code.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qvrcom::cli {

// Reads a program's arguments (without its name) into what `app` has. Help and version go to `out`, wrong
// usage is told on `err`, and so is an `out` that does not take its text: then the code to end with.
std::optional<ExitCode> read_arguments(CLI::App& app, std::vector<std::string> arguments, std::ostream& out,
                                       std::ostream& err);

// An empty value of the option, or argument, is wrong usage, for this reason. To leave it out is none.
void refuse_empty(CLI::Option& option, const char* reason);

inline constexpr const char* kNamesNoFile = "An empty text names no file";

}  // namespace qvrcom::cli
