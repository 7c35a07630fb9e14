#pragma once

#include "cli/invocation.h"

namespace CLI {
class App;
}

// One function a group of commands: each adds its sub-commands and their options, and when one of them is
// chosen puts it into the invocation.
namespace qvrcom::cli {

void add_setup_commands(CLI::App& app, Invocation& invocation);
void add_sites_commands(CLI::App& app, Invocation& invocation);
void add_stats_commands(CLI::App& app, Invocation& invocation);
void add_system_commands(CLI::App& app, Invocation& invocation);
void add_telnet_command(CLI::App& system, Invocation& invocation);
void add_same_log_commands(CLI::App& app, Invocation& invocation);
void add_view_command(CLI::App& app, Invocation& invocation);
void add_jobs_commands(CLI::App& app, Invocation& invocation);
void add_scheduler_commands(CLI::App& app, Invocation& invocation);

}  // namespace qvrcom::cli
