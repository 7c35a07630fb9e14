#include "requests/system_request.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "base/fault.h"
#include "base/number.h"
#include "devicefiles/device_time.h"
#include "platform/message.h"
#include "protocol/job_lists.h"
#include "session/file_rescue.h"
#include "session/job_steps.h"

namespace qvrcom::requests {
namespace {

namespace operation = session::operation;

// The commands that send a file of the user's.
bool sends_file(const std::string& name) {
  return name == operation::kSendFirmware || name == operation::kSendCannedMessages;
}

}  // namespace

std::string clock_difference(base::LocalTime device, base::LocalTime pc) {
  const auto seconds = (device - pc).count();
  if (seconds == 0) return "The device and the PC agree.";
  const auto length = seconds < 0 ? -seconds : seconds;
  return "The device is " + std::to_string(length) + (length == 1 ? " second " : " seconds ") +
         (seconds < 0 ? "behind" : "ahead of") + " the PC.";
}

// One call of a command: what it gets, and the raw form of what it gives.
struct SystemRequest::Call {
  session::SystemCommands& commands;
  const session::CommandSite site;
  const SystemOrder& order;
  std::string& status;
  std::string log_path = {};
  images::ClockRecord clock{};
  images::FirmwareRecord information{};
};

// A command, and what is made of its result once it has completed: false when there is none, which has been
// reported.
struct SystemRequest::Row {
  const char* operation;
  void (*run)(Call&);
  bool (SystemRequest::*take)(const Call&, SystemAnswer&);
};

const SystemRequest::Row SystemRequest::kRows[10] = {
    {operation::kGetLog, [](Call& c) { c.commands.GetLogFile(c.site, c.log_path, c.status); },
     &SystemRequest::take_log},
    {operation::kGetAndResetLog, [](Call& c) { c.commands.GetAndResetLogFile(c.site, c.log_path, c.status); },
     &SystemRequest::take_log},
    {operation::kResetLog, [](Call& c) { c.commands.ResetLogFile(c.site, c.status); },
     &SystemRequest::take_nothing},
    {operation::kGetDateAndTime, [](Call& c) { c.commands.GetDateAndTime(c.site, c.clock, c.status); },
     &SystemRequest::take_clock},
    {operation::kSetDateAndTime,
     [](Call& c) {
       const std::string bytes = devicefiles::write_device_time({c.order.clock});
       c.commands.SetDateAndTime(c.site, images::clock_record(bytes), c.status);
     },
     &SystemRequest::take_nothing},
    {operation::kTelnetSession, [](Call& c) { c.commands.Launch_TelnetSession(c.site, c.status); },
     &SystemRequest::take_nothing},
    {operation::kRetrieveMessageIndex,
     [](Call& c) { c.commands.GetPartitonInfo(c.site, c.order.partition, c.status); },
     &SystemRequest::take_partition_times},
    {operation::kGetSystemInformation,
     [](Call& c) { c.commands.GetFirmwareStructure(c.site, c.information, c.status); },
     &SystemRequest::take_information},
    {operation::kSendFirmware, [](Call& c) { c.commands.SendFirmware(c.site, c.order.file, c.status); },
     &SystemRequest::take_nothing},
    {operation::kSendCannedMessages,
     [](Call& c) { c.commands.SendCannedMessages(c.site, c.order.file, c.status); },
     &SystemRequest::take_nothing},
};

SystemRequest::SystemRequest(const SessionRequestParts& parts)
    : parts_(parts), request_(parts), trap_(parts.rules.ui) {}

SystemAnswer SystemRequest::run(const SystemOrder& order) {
  SystemAnswer answer;
  answer.result = trap_("SystemRequest", [&] {
    if (sends_file(order.operation) && refuses_file(order)) return RequestResult::kNotDone;
    return request_.run({order.site, order.operation, order.partition},
                        [&](session::SessionResult&) { return carry_out(order, answer); });
  });
  return answer;
}

bool SystemRequest::refuses_file(const SystemOrder& order) const {
  const platform::Files& files = parts_.rules.files;
  const std::string name = files.native(order.file);
  if (!files.file_exists(order.file)) {
    request_.refuse("No session is started: there is no file " + name + ".",
                    "Choose the file to send, then try again.");
    return true;
  }
  if (order.force || files.length(order.file) > 0) return false;
  request_.refuse("No session is started: the file " + name + " is empty.",
                  "A device that is sent an empty file may lose what it has. Force the command to send it.");
  return true;
}

RequestResult SystemRequest::carry_out(const SystemOrder& order, SystemAnswer& answer) {
  const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                [&](const Row& each) { return each.operation == order.operation; });
  if (row == std::end(kRows)) {
    throw base::Fault("Unknown operation", "\"" + order.operation + "\" is no system command.");
  }
  session::SystemCommands commands(parts_.rules, parts_.link, parts_.screen);
  Call call{commands, session::script_header(parts_.rules.session, {}), order, answer.status};
  row->run(call);
  answer.shortfall = parts_.rules.session.received.Shortfall;
  if (answer.status != protocol::kCompletedStatus) {
    drop_failed();
    return RequestResult::kNotDone;
  }
  return (this->*row->take)(call, answer) ? RequestResult::kDone : RequestResult::kNotDone;
}

bool SystemRequest::take_nothing(const Call&, SystemAnswer&) {
  return true;
}

// Of a job that has ended badly nothing is worth keeping but what its device was told to delete, which the
// session's outcome has brought to safety. A job whose outcome could not be finished stands in a list still.
void SystemRequest::drop_failed() const {
  const base::Session& session = parts_.rules.session;
  const bool is_over =
      !session.run.SessionStatus.empty() && parts_.rules.files.folder_exists(session.job.Folder) &&
      std::none_of(
          protocol::kResultLists.begin(), protocol::kResultLists.end(),
          [&](const protocol::ResultList& list) { return parts_.link.JobListedIn(list.pending_file); });
  if (is_over) end_log(session.run.SessionStatus != protocol::kCompletedStatus);
}

// The job's folder goes once the log is safe.
bool SystemRequest::take_log(const Call& call, SystemAnswer& answer) {
  platform::Files& files = parts_.rules.files;
  answer.log = files.read(call.log_path);
  const auto fault = base::fault_of([&] {
    if (!call.order.save_log_as.empty())
      files.save(call.order.save_log_as, answer.log, platform::Readers::kEverybody);
  });
  if (fault || !call.order.keeps_log) end_log(!fault);
  if (fault) throw *fault;
  return true;
}

void SystemRequest::end_log(bool is_taken) const {
  trap_("SystemRequest", [&] {
    const bool is_safe = is_taken || session::bring_to_safety(parts_.rules, parts_.rules.session.job.Name,
                                                              session::RescueWhat::kDeleted);
    if (is_safe) session::BusinessRules(parts_.rules).Remove_Folder();
  });
}

bool SystemRequest::take_clock(const Call& call, SystemAnswer& answer) {
  answer.record = images::clock_bytes(call.clock);
  answer.clock = devicefiles::read_device_time(answer.record).moment;
  answer.arrived = parts_.rules.session.run.AnsweredAt;
  return true;
}

bool SystemRequest::take_information(const Call& call, SystemAnswer& answer) {
  answer.record = images::firmware_bytes(call.information);
  answer.information = devicefiles::read_system_information(answer.record);
  if (!answer.information.firmware.empty()) store_firmware(answer.information.firmware);
  return true;
}

// What is told is there whether it can be stored or not.
void SystemRequest::store_firmware(const std::string& version) const {
  const base::SiteValues& site = parts_.rules.session.site;
  base::Field before;
  const auto fault =
      base::fault_of([&] { before = parts_.sites.store_firmware(base::to_int32(site.SiteID), version); });
  if (fault) {
    return request_.refuse("The firmware version " + version + " could not be stored at the site.",
                           fault->description() + ". " + fault->detail());
  }
  if (before == version) return;
  const bool was_known = before && !before->empty() && *before != "0";
  parts_.rules.ui.show(
      {.text = "The firmware version " + version + " is now stored at the site " +
               sitebook::title_of(site.SiteName, site.UserSiteID) + ".",
       .title = platform::kSuiteTitle,
       .icon = platform::Icon::kInformation,
       .detail = was_known ? "The site book had " + *before + "." : "The site book had none."});
}

bool SystemRequest::take_partition_times(const Call&, SystemAnswer& answer) {
  answer.partition_times = parts_.rules.session.received.PartitionTimes;
  return std::none_of(answer.partition_times.begin(), answer.partition_times.end(),
                      [](const base::TimeRecord& time) { return time == base::TimeRecord{}; });
}

}  // namespace qvrcom::requests
