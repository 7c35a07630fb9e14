#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvrcom::environment {

// A named SQL command. In the text a parameter stands as its name, bare or between back-quotes; arguments
// belong to the parameters by position.
struct Command {
  std::string name;
  std::string sql;
  std::vector<std::string> parameters;
};

// The four commands of the statistics control.
const std::vector<Command>& control_commands();

// The 112 commands over the configuration and statistics tables.
const std::vector<Command>& rules_commands();

// The SQL of a command with every parameter as ":name". Only words of the command's own parameter list are
// parameters; text literals and other quoted names stay as they are.
std::string with_placeholders(const Command& command);

}  // namespace qvrcom::environment
