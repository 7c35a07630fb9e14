#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/console_sessions.h"
#include "cli/console_user_interface.h"
#include "cli/exit_code.h"
#include "requests/session_request.h"

namespace qvrcom::cli {

// One communication session.
struct SessionStep {
  std::string name;  // "Berne - 7, partition 2": what was not done
  std::function<requests::RequestResult()> run;
};

// Communication sessions, one after another.
class SessionBatch {
 public:
  SessionBatch(Console& console, ConsoleUserInterface& ui, ConsoleSessions& sessions,
               const requests::SessionRequestParts& parts)
      : console_(console), ui_(ui), sessions_(sessions), parts_(parts) {}

  // One that fails does not stop the rest; a cancel and a scheduler that is not found do. One that brought
  // what it was run for counts as failed, too, when a box has told of a procedure that failed.
  ExitCode run(const std::vector<SessionStep>& steps);

 private:
  requests::RequestResult run_one(const SessionStep& step);
  ExitCode code_of(requests::RequestResult result) const;
  void tell_cancelled();

  Console& console_;
  ConsoleUserInterface& ui_;
  ConsoleSessions& sessions_;
  requests::SessionRequestParts parts_;
};

}  // namespace qvrcom::cli
