#pragma once

#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/console_sessions.h"
#include "cli/console_user_interface.h"
#include "cli/exit_code.h"
#include "control/statistics_request.h"

namespace qvrcom::cli {

// Statistics jobs, one communication session each, in the order given.
class StatisticsSessions : private control::StatisticsDisplay {
 public:
  StatisticsSessions(Console& console, ConsoleUserInterface& ui, ConsoleSessions& sessions,
                     const control::StatisticsRequestParts& parts)
      : console_(console), ui_(ui), sessions_(sessions), parts_(parts), request_(parts, *this) {}

  // Prints the native path of each file that a session leaves. One that fails does not stop the rest; a
  // cancel and a scheduler that is not found do.
  ExitCode run(const std::vector<control::StatisticsOrder>& orders);

 private:
  void ShowStatistics(const std::string& csvFile) override;
  ExitCode run_one(const control::StatisticsOrder& order);
  void tell_cancelled();

  Console& console_;
  ConsoleUserInterface& ui_;
  ConsoleSessions& sessions_;
  control::StatisticsRequestParts parts_;
  control::StatisticsRequest request_;
};

}  // namespace qvrcom::cli
