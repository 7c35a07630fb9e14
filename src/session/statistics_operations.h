#pragma once

#include <string>

#include "base/session_values.h"
#include "platform/files.h"
#include "platform/trap.h"
#include "rules/business_rules.h"
#include "session/session_frame.h"

namespace qvrcom::session {

// The statistics of one partition: retrieve, reset, or both. Each routine writes the current site's job and
// runs it; each is trapped under its own name. Devices that keep the older form of statistics can only be
// reset: a retrieval from them is refused before anything is written.
class StatisticsOperations {
 public:
  StatisticsOperations(const rules::BusinessRulesParts& parts, SessionFrame& frame);

  void ReceiveStatSinPart_NewQVR();
  void ResetStatSinPart_NewQVR();
  void ReceiveResetStatSinPart_NewQVR();

  // The outcome of a job that was submitted.
  void ProcessReceiveStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                 const std::string& user_site_id);
  void ProcessReceiveResetStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                      const std::string& user_site_id);
  void ProcessResetStatSinPart_NewQVR();

 private:
  struct Job;
  static const Job kRetrieve;
  static const Job kReset;
  static const Job kRetrieveReset;

  void run(const Job& job);
  void write(const Job& job);
  void refuse_old_statistics() const;
  std::string generation() const;
  std::string script_of(const Job& job) const;
  Outcome outcome_of(const Job& job, const std::string& procedure) const;
  void save_statistics(const std::string& site_name, const std::string& user_site_id);
  std::string partition() const;
  std::string downloaded_file() const;

  base::Session& session_;
  platform::Files& files_;
  environment::DBase& dbase_;
  SessionFrame& frame_;
  rules::BusinessRules& rules_;
  platform::Trap trap_;
};

}  // namespace qvrcom::session
