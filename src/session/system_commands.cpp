#include "session/system_commands.h"

#include "base/fault.h"
#include "base/text.h"
#include "protocol/job_lists.h"
#include "protocol/messages.h"
#include "protocol/operation_names.h"
#include "protocol/script_grammar.h"
#include "session/job_steps.h"

namespace qvrcom::session {
namespace {

namespace operation = protocol::operation;

enum class Transfer { kNone, kFetch, kSend, kTelnet };

// The table's rows.
enum Row : std::size_t {
  kGetLog,
  kGetAndResetLog,
  kResetLog,
  kGetClock,
  kSetClock,
  kTelnet,
  kPartition,
  kInformation,
  kFirmware,
  kPrompts
};

}  // namespace

struct SystemCommands::Command {
  const char* reported_as;  // by the trap
  const char* operation;    // also the job's description
  Transfer transfer;
  const char* remote = "";
  const char* local = "";  // name in the job's folder, a partition may follow
  const char* extension = "";
  bool deletes_remote = false;
  bool keeps_folder = false;  // after it has completed
};

// What one call adds to its row. The local file is handed over by its path.
struct SystemCommands::Order {
  const Command& command;
  const CommandSite& site;
  std::string partition = {};
  std::function<void(const std::string& file)> prepare = [](const std::string&) {};
  std::function<void(const std::string& file)> take = [](const std::string&) {};
};

// The clock is set under the name of the system information.
const SystemCommands::Command SystemCommands::kCommands[10] = {
    {.reported_as = "GetLogFile",
     .operation = operation::kGetLog,
     .transfer = Transfer::kFetch,
     .remote = "log",
     .local = "log",
     .keeps_folder = true},
    {.reported_as = "GetAndResetLogFile",
     .operation = operation::kGetAndResetLog,
     .transfer = Transfer::kFetch,
     .remote = "log",
     .local = "log",
     .deletes_remote = true,
     .keeps_folder = true},
    {.reported_as = "ResetLogFile",
     .operation = operation::kResetLog,
     .transfer = Transfer::kNone,
     .remote = "log",
     .deletes_remote = true},
    {.reported_as = "GetDateAndTime",
     .operation = operation::kGetDateAndTime,
     .transfer = Transfer::kFetch,
     .remote = "time",
     .local = "time"},
    {.reported_as = "GetFirmwareStructure",
     .operation = operation::kSetDateAndTime,
     .transfer = Transfer::kSend,
     .remote = "time",
     .local = "time"},
    {.reported_as = "Launch_TelnetSession",
     .operation = operation::kTelnetSession,
     .transfer = Transfer::kTelnet},
    {.reported_as = "GetPartitonInfo",
     .operation = operation::kRetrieveMessageIndex,
     .transfer = Transfer::kFetch,
     .remote = "msgindex",
     .local = "msgindexP",
     .extension = ".dat"},
    {.reported_as = "GetFirmwareStructure",
     .operation = operation::kGetSystemInformation,
     .transfer = Transfer::kFetch,
     .remote = "sysinfo",
     .local = "sysinfo",
     .extension = ".dat"},
    {.reported_as = "SendFirmware",
     .operation = operation::kSendFirmware,
     .transfer = Transfer::kSend,
     .remote = "firmware",
     .local = "firmware",
     .extension = ".dat"},
    {.reported_as = "SendCannedMessages",
     .operation = operation::kSendCannedMessages,
     .transfer = Transfer::kSend,
     .remote = "prompts",
     .local = "canned",
     .extension = ".dat"},
};

SystemCommands::SystemCommands(const BusinessRulesParts& parts, SchedulerLink& link, SessionScreen& screen)
    : parts_(parts), rules_(parts), link_(link), screen_(screen), trap_(parts.ui) {}

void SystemCommands::GetLogFile(const CommandSite& site, std::string& log_path, std::string& status) {
  run({.command = kCommands[kGetLog], .site = site, .take = [&](const auto& file) { log_path = file; }},
      status);
}

void SystemCommands::GetAndResetLogFile(const CommandSite& site, std::string& log_path, std::string& status) {
  run({.command = kCommands[kGetAndResetLog],
       .site = site,
       .take = [&](const auto& file) { log_path = file; }},
      status);
}

void SystemCommands::ResetLogFile(const CommandSite& site, std::string& status) {
  run({.command = kCommands[kResetLog], .site = site}, status);
}

void SystemCommands::GetDateAndTime(const CommandSite& site, images::ClockRecord& clock,
                                    std::string& status) {
  run({.command = kCommands[kGetClock],
       .site = site,
       .take = [&](const auto& file) { clock = rules_.Struct_Time(file); }},
      status);
}

void SystemCommands::SetDateAndTime(const CommandSite& site, const images::ClockRecord& clock,
                                    std::string& status) {
  run({.command = kCommands[kSetClock],
       .site = site,
       .prepare = [&](const auto& file) { parts_.files.replace(file, images::clock_bytes(clock)); }},
      status);
}

void SystemCommands::Launch_TelnetSession(const CommandSite& site, std::string& status) {
  run({.command = kCommands[kTelnet], .site = site}, status);
}

void SystemCommands::GetPartitonInfo(const CommandSite& site, const std::string& partition,
                                     std::string& status) {
  run({.command = kCommands[kPartition],
       .site = site,
       .partition = partition,
       .take = [&](const auto& file) { rules_.PARTITION_INFO(file); }},
      status);
}

void SystemCommands::GetFirmwareStructure(const CommandSite& site, images::FirmwareRecord& record,
                                          std::string& status) {
  run({.command = kCommands[kInformation],
       .site = site,
       .take = [&](const auto& file) { record = rules_.Struct_Firmware(file); }},
      status);
}

void SystemCommands::SendFirmware(const CommandSite& site, const std::string& file, std::string& status) {
  run({.command = kCommands[kFirmware],
       .site = site,
       .prepare = [&](const auto& copy) { parts_.files.copy(file, copy); }},
      status);
}

void SystemCommands::SendCannedMessages(const CommandSite& site, const std::string& file,
                                        std::string& status) {
  run({.command = kCommands[kPrompts],
       .site = site,
       .prepare = [&](const auto& copy) { parts_.files.copy(file, copy); }},
      status);
}

// The status stays "Error" after a fault. A job that was run is over for the scheduler even when its result
// cannot be taken.
void SystemCommands::run(const Order& order, std::string& status) {
  base::RunValues& values = parts_.session.run;
  values.SystemCommandActive = true;
  posted_ = false;
  status = protocol::kErrorStatus;
  trap_(order.command.reported_as, [&] {
    if (!make_folder(order)) return;
    write(order);
    submit(order);
    screen_.show_modal();
    const bool taken = trap_(order.command.reported_as, [&] {
      if (values.SessionStatus == protocol::kCompletedStatus) take_result(order);
      return true;
    });
    if (taken) status = values.SessionStatus;
    if (values.CancelRequested) status = protocol::kCancelledStatus;
    if (!values.CancelRequested) link_.NotifyScheduler(protocol::SchedulerRequest::kSessionOver);
  });
  if (!posted_) trap_(order.command.reported_as, [&] { discard(); });
  values.SystemCommandActive = false;
}

// False when the folder could not be made, which has been reported. Whatever an earlier job left in the
// session is forgotten first: no step may work on that job.
bool SystemCommands::make_folder(const Order& order) {
  base::Session& session = parts_.session;
  session.run.CancelRequested = false;
  session.run.SessionStatus.clear();
  session.received.Shortfall.clear();
  session.job.JobId.clear();
  session.job.Folder.clear();
  session.job.Suffix = kPlainSuffix;
  session.site.SiteID = order.site.qvr_id;
  take_base_time(parts_, {&session.job.Suffix, 1});
  take_immediate_times(session.job);
  rules_.Create_Dir();
  return parts_.files.folder_exists(session.job.Folder);
}

void SystemCommands::write(const Order& order) {
  order.prepare(local_path(order));
  const base::JobValues& job = parts_.session.job;
  protocol::ScriptHeader header = order.site;
  header.description = order.command.operation;
  header.start_date = job.StartDate;
  header.stop_date = job.StopDate;
  header.interval = job.Interval;
  header.period = job.Period;
  if (order.command.transfer == Transfer::kTelnet) {
    rules_.Write_Script_Header(header, jobs::kTelnetSession);
  } else {
    rules_.Write_Script_Header(header);
    rules_.Write_Script(body_of(order));
    rules_.Write_Script_End();
  }
  rules_.Write_Index(header.site_name, header.site_id, header.description, header.start_date, header.interval,
                     header.period);
}

// The partition's number is written without blanks for the device, and as it came in the local name.
std::string SystemCommands::body_of(const Order& order) const {
  const Command& command = order.command;
  const std::string local = local_path(order);
  std::vector<protocol::ScriptCommand> commands;
  if (&command == &kCommands[kPartition]) commands.push_back(protocol::select_partition(order.partition));
  if (command.transfer == Transfer::kFetch) commands.push_back(protocol::get_file(command.remote, local));
  if (command.transfer == Transfer::kSend)
    commands.push_back(protocol::put_file(command.remote, local, parts_.files.length(local)));
  if (command.deletes_remote) commands.push_back(protocol::delete_file(command.remote));
  return protocol::commands_text(commands);
}

std::string SystemCommands::local_path(const Order& order) const {
  return parts_.session.job.Folder + "\\" + order.command.local + order.partition + order.command.extension;
}

void SystemCommands::submit(const Order& order) {
  parts_.session.run.CurrentOperation = order.command.operation;
  rules_.Copy_Items_From_Scheduler_to_BeProcessed();
  parts_.ui.pump_events();
  rules_.Validate_Index_File();
  require_listed(rules_, link_);
  link_.NotifyScheduler(protocol::SchedulerRequest::kJobsSubmitted);
  posted_ = !link_.scheduler_missing();
  link_.NotifyScheduler(protocol::SchedulerRequest::kShowSession);
}

void SystemCommands::take_result(const Order& order) {
  const std::string file = local_path(order);
  if (order.command.transfer == Transfer::kFetch && !parts_.files.file_exists(file)) {
    if (!order.command.keeps_folder) rules_.Remove_Folder();
    throw base::Fault(base::kFileNotFound,
                      "The job has completed, but " + parts_.files.native(file) + " did not arrive.");
  }
  order.take(file);
  const std::string& shortfall = parts_.session.received.Shortfall;
  if (!shortfall.empty()) log_to_job(parts_, shortfall);
  if (!order.command.keeps_folder) rules_.Remove_Folder();
}

// A job without an index line is known by its folder alone.
void SystemCommands::discard() {
  rules_.Remove_Folder();
  const std::string& folder = parts_.session.job.Folder;
  if (!folder.empty() && parts_.files.folder_exists(folder)) jobs::delete_job_folder(parts_.files, folder);
}

}  // namespace qvrcom::session
