#pragma once

#include <cstdint>

namespace qvrcom::protocol {

// Registered messages between the programs.
inline constexpr const char* kSchedulerMessage = "CBL_QVRCOM_SCHEDULER";  // to JobPilot
inline constexpr const char* kRePilotMessage = "CBL_QVRCOM_REPILOT";      // to RePilot
inline constexpr const char* kSchedulerAnswer = "CBL_SCHEDULER_QVRCOM";   // back to the session dialog

// Titles of the windows that they are posted to.
inline constexpr const char* kJobPilotTitle = "JOBPILOT";
inline constexpr const char* kRePilotTitle = "REPILOT";
inline constexpr const char* kDialogTitle = "RESPONSE DIALOG";

// What this suite asks of a scheduler program.
enum class SchedulerRequest : std::int16_t {
  kJobsSubmitted = 1,      // look into the job index
  kResultsTaken = 2,       // the finished lines have been copied
  kShowSession = 5,        // show what is running
  kSessionOver = 6,        // the answer has been understood
  kShowTelnetSession = 9,  // show the Telnet session
};

}  // namespace qvrcom::protocol
