#pragma once

#include <iosfwd>

#include "cli/console.h"
#include "cli/session_batch.h"
#include "cli/telnet_terminal.h"
#include "csv/byte_source.h"
#include "environment/files_and_folders.h"
#include "environment/set_up.h"
#include "jobs/job_board.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/programs.h"
#include "platform/scheduler_control.h"
#include "platform/user_interface.h"
#include "sitebook/site_book.h"

namespace qvrcom::cli {

// What the commands work with; each takes what it needs.
struct CommandContext {
  Console& console;
  std::istream& in;
  platform::UserInterface& ui;
  platform::Clock& clock;
  platform::Files& files;
  platform::Programs& programs;
  platform::SchedulerControl& scheduler;
  const platform::Machine& machine;
  const environment::FilesAndFolders& folders;
  environment::SetUp& set_up;
  environment::MachineFolders proposed_folders;  // for set-up
  sitebook::SiteBook& sites;
  const jobs::JobBoard& jobs;
  const csv::ByteSources& byte_sources;
  SessionBatch& sessions;
  const requests::SessionRequestParts& requests;  // of the commands that run sessions
  TelnetTerminal& telnet;
};

}  // namespace qvrcom::cli
