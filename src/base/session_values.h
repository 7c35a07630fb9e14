#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/date_serial.h"
#include "base/node_types.h"

// What the suite knows about the operation and the job at hand. Plain values, one group per owner; a class
// is handed the group it works on. A program holds one `Session`, made by its wiring.
namespace qvrcom::base {

// One site of the session's site table: thirteen texts, numbered as the suite numbers them.
struct SiteConnection {
  enum Field : std::size_t {
    kName,
    kUserSiteId,
    kSiteId,
    kLanAddress,
    kDirectAddress,
    kModemAddress,
    kAccessCode,
    kConnectMethod,
    kDialupConnection,
    kNumberToDial,
    kDeviceGeneration,
    kFirmwareVersion,
    kMachineType,
    kFieldCount
  };

  std::array<std::string, kFieldCount> fields;

  std::string& operator[](Field field) { return fields[field]; }
  const std::string& operator[](Field field) const { return fields[field]; }
};

// The site being worked on.
struct SiteValues {
  std::string SiteName;
  std::string UserSiteID;     // the user's own identifier: SITEID= of a script
  std::string SiteID;         // the site book's key: QVRID= of a script
  std::string ConnectMethod;  // "1" modem (dial-up), "2" direct, anything else LAN
  std::string IPLan;
  std::string IPDirect;
  std::string IPModem;
  std::string AccessCode;  // the device password
  std::string DialupConnection;
  std::string NumberToDial;
  std::string LoginName;  // the device user
  std::string FirmwareVersion;
  std::string DeviceGeneration;  // "NEW" for devices that this software can work with
  std::string ControlCardType;   // as the site component answered it
  std::string MachineType;       // "2" or "3"
  std::string CurrentConfigID;   // the configuration that the suite's screens work on

  std::vector<std::string> SelectedSites;       // one spare element at the end
  std::vector<SiteConnection> SiteConnections;  // the session's site table, one spare element at the end
};

// The job being built or waited for.
struct JobValues {
  LocalTime SessionStart{};    // the job base time
  std::string Suffix = "000";  // three characters behind the time stamp
  std::string Name;            // stamp + suffix
  std::string Folder;          // scheduler folder + name, no backslash at the end
  bool NewJob = true;          // false when an existing job is rescheduled
  double RescheduleValue = 0;  // creation serial of a rescheduled line
  std::string StartDate;       // date serials as texts
  std::string StopDate;
  std::string Interval;
  std::string Period;
  std::string JobId;  // the index line, without its line end
};

// The run of one operation through the session dialog.
struct RunValues {
  std::string CurrentOperation;
  bool ImmediateRun = true;
  bool LastSite = false;
  bool AnswerReceived = false;
  LocalTime AnsweredAt{};  // the moment of the answer that was received last
  bool CancelRequested = false;
  std::string SessionStatus;  // "", "Completed", "Error" or "Cancelled"
  std::string SessionConfigID;
  std::string PartitionID;
  std::string StatsResultFile;       // suite path of the CSV that the operation wrote, or ""
  bool SystemCommandActive = false;  // from the first step of a system command to its last
  std::string SchedulerFolder;       // ends in a backslash; "" until it is resolved
};

// A recording's length: seconds past the whole minute and whole minutes, both decimal texts.
struct TimeRecord {
  std::string seconds;
  std::string minutes;
  bool operator==(const TimeRecord&) const = default;
};

// What was read from the files that a device sent.
struct ReceivedValues {
  std::array<TimeRecord, 2> PartitionTimes;         // recorded time, and the room for it
  std::vector<std::string> ReceivedPartitions{""};  // of the configuration images that were decoded
  std::size_t PartitionCount = 0;                   // how many were decoded since the list was cleared
  bool SystemImageRead = false;                     // likewise, whether the device's list of partitions was
  std::vector<std::string> MessageNumbers{""};      // of the message index read last; one spare element
  std::string Shortfall;  // sentence about the device record read last, when its file was too short; or ""
};

// The nodes of one type, by name.
struct NodeList {
  std::vector<std::string> names;
  bool has_any = false;  // whether the type had a node when it was asked for last
};

// The nodes of the partition that the lists were built for last.
struct NodeValues {
  std::array<NodeList, kNodeTypeWords.size()> by_type;
  NodeList all;  // of every type that has any, in the order of the types
};

struct Session {
  SiteValues site;
  JobValues job;
  RunValues run;
  ReceivedValues received;
  NodeValues nodes;
};

}  // namespace qvrcom::base
