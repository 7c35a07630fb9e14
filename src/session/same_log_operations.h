#pragma once

#include <string>

#include "base/session_values.h"
#include "platform/trap.h"
#include "session/business_rules.h"
#include "session/session_frame.h"

namespace qvrcom::session {

// The device's SAME log: retrieved by a job of its own, and filed in the SAME log folder under two lines that
// name the site. The log is bytes to us: nothing in it is changed.
class SameLogOperations {
 public:
  SameLogOperations(const BusinessRulesParts& parts, SessionFrame& frame)
      : parts_(parts), session_(parts.session), frame_(frame), rules_(frame.rules()), trap_(parts.ui) {}

  void RetrieveSAME_Log();

  // The outcome of the session's job, which another run wrote.
  void process_outcome();

  // The outcome of its job. The result names the filed log.
  void ProcessRetrieveSameLog_NewQVR(const std::string& local_file, const std::string& site_name,
                                     const std::string& user_site_id);

 private:
  void write(const std::string& local_file);
  void file_log(const std::string& local_file, const std::string& site_name, const std::string& user_site_id);
  std::string local_file() const;
  std::string name_for(const std::string& local_file) const;

  BusinessRulesParts parts_;
  base::Session& session_;
  SessionFrame& frame_;
  BusinessRules& rules_;
  platform::Trap trap_;
};

}  // namespace qvrcom::session
