#pragma once

namespace qvrcom::protocol {

// Lists in the scheduler folder: what the scheduler finished, the job indexes, and the copies of the
// finished lists that this library still has to work on.
inline constexpr const char* kCompletedFile = "completed.sch";
inline constexpr const char* kErrorFile = "error.sch";
inline constexpr const char* kCancelledFile = "cancelled.sch";
inline constexpr const char* kIndexFile = "index.sch";
inline constexpr const char* kRescheduleFile = "reschedule.sch";
inline constexpr const char* kCompletedPendingFile = "CompletedToProcess.sch";
inline constexpr const char* kErrorPendingFile = "ErrorToProcess.sch";
inline constexpr const char* kCancelledPendingFile = "CancelledToProcess.sch";
inline constexpr const char* kPendingFiles[] = {kCompletedPendingFile, kErrorPendingFile,
                                                kCancelledPendingFile};

}  // namespace qvrcom::protocol
