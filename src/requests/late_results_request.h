#pragma once

#include <string>
#include <vector>

#include "jobs/job_board.h"
#include "requests/session_request.h"

namespace qvrcom::requests {

struct LateResultsAnswer {
  RequestResult result = RequestResult::kNotDone;
  std::vector<std::string> files;  // suite paths of the CSV files or the log that came of the job
};

// Takes over what came of jobs that ended while nobody waited for them (a program that was killed, a closed
// window, a full disk): their outcome routines run as they would have run in the session dialog.
class LateResultsRequest {
 public:
  LateResultsRequest(const SessionRequestParts& parts, const jobs::JobBoard& board)
      : parts_(parts), board_(board), request_(parts), trap_(parts.rules.ui) {}

  // The jobs; the one that a running session is about to take over among them. Fault when a list cannot be
  // read.
  std::vector<jobs::BoardJob> waiting() const;

  // "2 finished jobs have not been processed: NAME, NAME."; "" when the board has none, or a session runs,
  // which takes its own over.
  std::string notice(const jobs::Board& board) const;

  LateResultsAnswer process(const jobs::BoardJob& job);

 private:
  RequestResult run(const jobs::BoardJob& job, LateResultsAnswer& answer, session::SessionResult& brought);
  void take_over(const jobs::BoardJob& job) const;
  std::string list_again(const jobs::BoardJob& job) const;

  SessionRequestParts parts_;
  const jobs::JobBoard& board_;
  SessionRequest request_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
