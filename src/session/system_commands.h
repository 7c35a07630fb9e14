#pragma once

#include <functional>
#include <string>

#include "images/device_records.h"
#include "platform/trap.h"
#include "protocol/script_grammar.h"
#include "session/business_rules.h"
#include "session/scheduler_link.h"
#include "session/session_view.h"

namespace qvrcom::session {

// The device that a system command goes to: what its script's header says of the site. Description, times,
// interval and period are left to the command.
using CommandSite = protocol::ScriptHeader;

// The ten commands to a device as a whole. Each writes its own job, submits it, shows the session dialog
// until JobPilot has answered, and then does its own result step. `status` becomes "Completed", "Error",
// "Cancelled", or "" when no answer came; after a fault, which is reported in a box, "Error". A job that the
// scheduler was never told of leaves nothing behind; one that failed or was cancelled leaves its folder.
class SystemCommands {
 public:
  SystemCommands(const BusinessRulesParts& parts, SchedulerLink& link, SessionScreen& screen);

  // The log stays in the job's folder; who has read it there calls Remove_Folder.
  void GetLogFile(const CommandSite& site, std::string& log_path, std::string& status);
  void GetAndResetLogFile(const CommandSite& site, std::string& log_path, std::string& status);
  void ResetLogFile(const CommandSite& site, std::string& status);

  void GetDateAndTime(const CommandSite& site, images::ClockRecord& clock, std::string& status);
  void SetDateAndTime(const CommandSite& site, const images::ClockRecord& clock, std::string& status);

  void Launch_TelnetSession(const CommandSite& site, std::string& status);

  // Puts the partition's two times into the session's `PartitionTimes`.
  void GetPartitonInfo(const CommandSite& site, const std::string& partition, std::string& status);
  void GetFirmwareStructure(const CommandSite& site, images::FirmwareRecord& record, std::string& status);

  // `file` is sent as it is when the job's folder is made.
  void SendFirmware(const CommandSite& site, const std::string& file, std::string& status);
  void SendCannedMessages(const CommandSite& site, const std::string& file, std::string& status);

 private:
  struct Command;
  struct Order;
  static const Command kCommands[10];

  void run(const Order& order, std::string& status);
  bool make_folder(const Order& order);
  void write(const Order& order);
  void submit(const Order& order);
  void take_result(const Order& order);
  void discard();
  std::string body_of(const Order& order) const;
  std::string local_path(const Order& order) const;

  BusinessRulesParts parts_;
  BusinessRules rules_;
  SchedulerLink& link_;
  SessionScreen& screen_;
  platform::Trap trap_;
  bool posted_ = false;  // the scheduler was told of the job at hand
};

}  // namespace qvrcom::session
