#pragma once

#include <string>

#include "base/session_values.h"
#include "jobs/file_helpers.h"
#include "jobs/scheduler_files.h"
#include "platform/files.h"
#include "platform/trap.h"
#include "protocol/script_grammar.h"

namespace qvrcom::jobs {

// Chooses the telnet variant of Write_Script_Header.
struct TelnetSession {};
inline constexpr TelnetSession kTelnetSession{};

// Writes the command script of a job: Create_Dir, Write_Script_Header, any number of Write_Script, then
// Write_Script_End. Every call appends to the script on disk; nothing is held open or rolled back.
class ScriptWriter {
 public:
  ScriptWriter(base::JobValues& job, const SchedulerFiles& scheduler, FileHelpers& helpers,
               platform::Files& files, platform::UserInterface& ui)
      : job_(job), scheduler_(scheduler), helpers_(helpers), files_(files), trap_(ui) {}

  // Names the job after its base time and suffix and makes its folder, unless it is there.
  void Create_Dir();

  void Write_Script_Header(const protocol::ScriptHeader& header);

  // A complete telnet script; nothing is written behind it.
  void Write_Script_Header(const protocol::ScriptHeader& header, TelnetSession);

  // One command line, or several joined by CR LF.
  void Write_Script(const std::string& text);

  void Write_Script_End();

  // Empties the password in the script of the job whose folder this is, if there is one: the job has ended,
  // and its folder stays.
  void clear_password(const std::string& folder);

 private:
  void print(const std::string& procedure, const std::string& text);

  base::JobValues& job_;
  const SchedulerFiles& scheduler_;
  FileHelpers& helpers_;
  platform::Files& files_;
  platform::Trap trap_;
};

}  // namespace qvrcom::jobs
