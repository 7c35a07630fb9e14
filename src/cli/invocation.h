#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "platform/message.h"

namespace qvrcom::cli {

struct CommandContext;
using Command = std::function<ExitCode(CommandContext&)>;

// What a command line asks for.
struct Invocation {
  Command command;                         // empty when there is nothing to run: help, version, wrong usage
  ExitCode exit_code = ExitCode::kDone;    // then
  bool needs_set_up = true;                // otherwise: whether the machine has to be set up
  bool tells_late_results = true;          // before it runs: finished jobs that nobody has processed
  bool wait = false;                       // for another program's session to end
  std::optional<platform::Button> answer;  // to message boxes that ask
};

// Reads the arguments (without the program's name). Help and version go to `out`; wrong usage is told on
// `err`.
Invocation read_command_line(std::vector<std::string> arguments, const std::string& version,
                             std::ostream& out, std::ostream& err);

// Runs the command: first makes sure that the machine is set up when it has to be, and reports a fault.
ExitCode run(const Invocation& invocation, CommandContext& context);

}  // namespace qvrcom::cli
