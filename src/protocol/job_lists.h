#pragma once

#include <array>
#include <cstddef>

// The files of the scheduler folder that hold index lines, docs/formats/index.md.
namespace qvrcom::protocol {

inline constexpr const char* kIndexFile = "index.sch";
inline constexpr const char* kRescheduleFile = "reschedule.sch";

// How a job ends.
enum class Ending { kCompleted, kError, kCancelled };

// How a job has ended, for the session dialog, its callers and people.
inline constexpr const char* kCompletedStatus = "Completed";
inline constexpr const char* kErrorStatus = "Error";
inline constexpr const char* kCancelledStatus = "Cancelled";

// One way to end, in every place that tells of it.
struct ResultList {
  Ending ending;
  const char* status;
  const char* report_word;   // in the last line of the job's report
  const char* file;          // the scheduler lists the jobs that ended so
  const char* pending_file;  // this library's copy: what it still has to work on
};

// In the order of `Ending`.
inline constexpr std::array<ResultList, 3> kResultLists{{
    {Ending::kCompleted, kCompletedStatus, "completed", "completed.sch", "CompletedToProcess.sch"},
    {Ending::kError, kErrorStatus, "error", "error.sch", "ErrorToProcess.sch"},
    {Ending::kCancelled, kCancelledStatus, "cancelled", "cancelled.sch", "CancelledToProcess.sch"},
}};

constexpr const ResultList& result_list(Ending ending) {
  return kResultLists[static_cast<std::size_t>(ending)];
}

// All of them, in the order in which they are read: the indexes, the result lists, the pending lists.
inline constexpr std::array<const char*, 8> kJobLists{
    kIndexFile,
    kRescheduleFile,
    kResultLists[0].file,
    kResultLists[1].file,
    kResultLists[2].file,
    kResultLists[0].pending_file,
    kResultLists[1].pending_file,
    kResultLists[2].pending_file,
};

}  // namespace qvrcom::protocol
