#pragma once

#include <string>
#include <vector>

#include "jobs/job_board.h"
#include "platform/message.h"
#include "requests/job_upkeep.h"
#include "requests/late_results_request.h"

namespace qvrcom::requests {

platform::Message message_of(const jobs::UnreadList& list);

// What has become of a job that was to be removed, to be read behind its name.
const char* words_of(JobUpkeep::Removal::Outcome outcome);
bool is_removed(JobUpkeep::Removal::Outcome outcome);

// What the user can do, in the words of a program.
struct JobAdvice {
  std::string finished;  // about jobs whose results are to be taken over
  std::string waiting;   // about jobs that are to be kept from being run
};

// What every program does with the jobs at its start, on one reading of their lists: what has ended keeps no
// access code. The answer is what there is to tell: lists that cannot be read, jobs that ended while nobody
// waited for them, and jobs that still wait with nobody waiting for them.
std::vector<platform::Message> look_after_jobs(const jobs::JobBoard& board, JobUpkeep& upkeep,
                                               const LateResultsRequest& late, const JobAdvice& advice);

}  // namespace qvrcom::requests
