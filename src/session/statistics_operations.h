#pragma once

#include <string>
#include <string_view>

#include "base/session_values.h"
#include "platform/files.h"
#include "platform/trap.h"
#include "session/business_rules.h"
#include "session/old_statistics.h"
#include "session/session_frame.h"

namespace qvrcom::session {

// The statistics of one partition: retrieve, reset, or both. Each routine writes the current site's job and
// runs it; each is trapped under its own name. The device's firmware decides which form is retrieved: a CSV
// that the device made, or two files of the older form, which are decoded here.
class StatisticsOperations {
 public:
  StatisticsOperations(const BusinessRulesParts& parts, SessionFrame& frame);

  void ReceiveStatSinPart_NewQVR();
  void ResetStatSinPart_NewQVR();
  void ReceiveResetStatSinPart_NewQVR();

  // The outcome routine of the session's job, which another run wrote; `operation` is one of the three names.
  void process_outcome(std::string_view operation);

  // The outcome of a job that was submitted.
  void ProcessReceiveStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                 const std::string& user_site_id);
  void ProcessReceiveResetStatSinPart_NewQVR_NewStats(const std::string& site_name,
                                                      const std::string& user_site_id);
  void ProcessReceiveStatSinPart_NewQVR_OldStats(const std::string& line_stat_file,
                                                 const std::string& node_stat_file);
  void ProcessReceiveResetStatSinPart_NewQVR_OldStats(const std::string& line_stat_file,
                                                      const std::string& node_stat_file);
  void ProcessResetStatSinPart_NewQVR();

 private:
  using NewOutcome = void (StatisticsOperations::*)(const std::string& site_name,
                                                    const std::string& user_site_id);
  using OldOutcome = void (StatisticsOperations::*)(const std::string& line_stat_file,
                                                    const std::string& node_stat_file);
  struct Job;
  static const Job kRetrieve;
  static const Job kReset;
  static const Job kRetrieveReset;

  void retrieve(const Job& job);
  void run_outcome(const Job& job, bool is_old_form);
  void write(const Job& job, const std::string& statistics);
  void write_new_form(const Job& job);
  void write_old_form(const Job& job);
  std::string generation() const;
  Outcome outcome_of(const Job& job, const std::string& procedure, const char* completed) const;
  void run_new_outcome(const Job& job, const char* procedure, const std::string& site_name,
                       const std::string& user_site_id);
  void run_old_outcome(const Job& job, const char* procedure, const std::string& line_stat_file,
                       const std::string& node_stat_file);
  void save_statistics(const std::string& site_name, const std::string& user_site_id);
  Remainder decode_statistics(const std::string& line_stat_file, const std::string& node_stat_file);
  bool has_been_taken();
  std::string partition() const;
  std::string downloaded_file() const;

  base::Session& session_;
  platform::Files& files_;
  environment::DBase& dbase_;
  SessionFrame& frame_;
  BusinessRules& rules_;
  OldStatistics old_;
  platform::Trap trap_;
};

}  // namespace qvrcom::session
