#pragma once

// Operation names. They are compared as they stand: letter case and trailing blanks count. A job's
// description is, or begins with, the name of its operation.
namespace qvrcom::protocol::operation {

inline constexpr const char* kRetrieveConfiguration = "Retrieve Entire Configuration";
inline constexpr const char* kRetrievePartition = "Retrieve Partition in Configuration";
inline constexpr const char* kRetrieveAllMessages = "Retrieve All Messages";
inline constexpr const char* kRetrieveAllMessageIndexes = "Retrieve All Message Indexes";
inline constexpr const char* kRetrieveMessages = "Retrieve Message(s) in Partition";
inline constexpr const char* kViewDevice = "View QVR+/RDN";
inline constexpr const char* kViewConfiguration = "View Config";
inline constexpr const char* kProcessViewDevice = "Process_View_QVR+/RDN";
inline constexpr const char* kProcessViewConfiguration = "Process_View_Config";
inline constexpr const char* kRetrieveStatistics = "Retrieve Statistics for Partition ";
inline constexpr const char* kResetStatistics = "Reset Statistics for Partition ";
inline constexpr const char* kRetrieveResetStatistics = "Retrieve Reset Statistics for Partition ";
inline constexpr const char* kRetrieveAllStatistics = "Retrieve Statistics All Partitions";
inline constexpr const char* kResetAllStatistics = "Reset Statistics All Partitions";
inline constexpr const char* kRetrieveResetAllStatistics = "Retrieve Reset Statistics All Partitions";
inline constexpr const char* kRetrieveSameLog = "Retrieve SAME Log";
inline constexpr const char* kSendConfiguration = "Send Entire Configuration";
inline constexpr const char* kSendPartition = "Send Partition in Configuration";
inline constexpr const char* kSendNodes = "Send Node(s) in Configuration";
inline constexpr const char* kRemoveNodes = "Remove Node(s) in Configuration";
inline constexpr const char* kSendAllMessages = "Send All Messages";
inline constexpr const char* kSendMessages = "Send Message(s) in Partition";
inline constexpr const char* kRemovePartition = "Remove for Partition ";
inline constexpr const char* kGetSystemInformation = "Get QVR+/RDN System Information";
inline constexpr const char* kSendFirmware = "Send Firmware File";
inline constexpr const char* kSendCannedMessages = "Send Canned Messages";
inline constexpr const char* kSetDateAndTime = "Set Date And Time";
inline constexpr const char* kGetDateAndTime = "Get Date And Time";
inline constexpr const char* kGetLog = "Get Log File";
inline constexpr const char* kGetAndResetLog = "Get and Reset Log File";
inline constexpr const char* kResetLog = "Reset Log File";
inline constexpr const char* kRetrieveMessageIndex = "Retrieve Message Index for Partition ";
inline constexpr const char* kTelnetSession = "Launch Telnet Session";

}  // namespace qvrcom::protocol::operation
