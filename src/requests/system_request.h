#pragma once

#include <array>
#include <string>

#include "base/date_serial.h"
#include "base/session_values.h"
#include "devicefiles/system_information.h"
#include "platform/trap.h"
#include "requests/session_request.h"
#include "session/system_commands.h"

namespace qvrcom::requests {

// One system command that somebody asks for.
struct SystemOrder {
  sitebook::SiteRecord site;
  std::string operation = session::operation::kGetLog;  // one of the ten commands' operation names
  std::string partition = {};                           // kRetrieveMessageIndex: "1" to "64"
  base::LocalTime clock{};                              // kSetDateAndTime: what the device's clock shall show
  std::string file = {};         // kSendFirmware, kSendCannedMessages: suite path of the file to send
  bool force = false;            // sends an empty file too
  std::string save_log_as = {};  // kGetLog, kGetAndResetLog: suite path to copy the log to; may be ""
  bool keeps_log = false;        // likewise: the job's folder stays until end_log()
};

// What came of it. Beside `result` and `status` only what the command fetches is filled.
struct SystemAnswer {
  RequestResult result = RequestResult::kNotDone;
  std::string status;                               // "Completed", "Error", "Cancelled" or ""
  std::string log;                                  // as the device sent it
  base::LocalTime clock{};                          // the device's
  base::LocalTime arrived{};                        // the PC's moment when `clock` had been fetched
  devicefiles::SystemInformation information;       // of the device
  std::array<base::TimeRecord, 2> partition_times;  // recorded time, and the room for it
  std::string record;     // the bytes of clock or information, those of another form too; or ""
  std::string shortfall;  // sentence: a file that was too short; or ""
};

// "The device is 3 seconds behind the PC."
std::string clock_difference(base::LocalTime device, base::LocalTime pc);

// The bridge from a user's wish to the system commands. Before anything is sent a file is refused that is not
// there, or is empty without `force`. A device file that is not of this suite's form is reported (kNotDone).
// A fetched log is copied out before the job's folder is removed; when that fails it is brought to safety
// where the device was told to delete its own, otherwise the folder stays. The firmware version of system
// information is stored at the site, and a box says so when it is another one than before.
class SystemRequest {
 public:
  explicit SystemRequest(const SessionRequestParts& parts);

  SystemAnswer run(const SystemOrder& order);

  // After a log that was kept: whether whoever asked for it has all of it now. Otherwise as if it could not
  // be copied.
  void end_log(bool is_taken) const;

 private:
  struct Call;
  struct Row;
  static const Row kRows[10];

  bool refuses_file(const SystemOrder& order) const;
  RequestResult carry_out(const SystemOrder& order, SystemAnswer& answer);
  bool take_nothing(const Call& call, SystemAnswer& answer);
  void drop_failed() const;
  bool take_log(const Call& call, SystemAnswer& answer);
  bool take_clock(const Call& call, SystemAnswer& answer);
  bool take_information(const Call& call, SystemAnswer& answer);
  void store_firmware(const std::string& version) const;
  bool take_partition_times(const Call& call, SystemAnswer& answer);

  SessionRequestParts parts_;
  SessionRequest request_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
