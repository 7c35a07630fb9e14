#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "link/scheduler_link.h"
#include "platform/message_channel.h"
#include "platform/trap.h"
#include "rules/business_rules.h"
#include "session/operations.h"
#include "session/session_frame.h"
#include "session/session_view.h"
#include "session/statistics_operations.h"

namespace qvrcom::session {

struct SessionParts {
  rules::BusinessRulesParts rules;
  link::SchedulerLink& link;
  platform::MessageChannel& channel;
};

// The session dialog without its window: checks each selected site, has its job written and run, and tells
// the view what to show. Its window on the message channel is titled "RESPONSE DIALOG".
class frmResponse : private rules::BusinessRules, public SessionFrame {
 public:
  static constexpr const char* kTitle = "RESPONSE DIALOG";

  frmResponse(const SessionParts& parts, SessionView& view,
              std::span<const Operation> known_operations = operations());

  // False when the dialog cannot be reached by the scheduler (a box has said why): it must not be shown.
  bool Form_Load();

  // The first activation prepares the dialog and runs `CurrentOperation`; it returns when the run has ended.
  // Another one meanwhile prepares again; after the end it does nothing.
  void Form_Activate();
  void Form_Unload();

  // "OK" closes; "Cancel" shows the session in JobPilot, asks the run to end, and closes.
  void cmdCancel_Click();
  void Timer1_Timer();

  // The next job suffix: "001" to "099", "100" and above as they are. Fault "Overflow" beyond 32767.
  std::string NextSequenceText();

  bool closed() const { return closed_; }

 private:
  void prepare();
  void run_sites(const Operation& operation);
  void run_site(const Operation& operation, const std::string& operation_name, const std::string& site_key);
  void put_back();
  bool passes(EntryKind entry);
  void refuse(const std::string& warning, platform::Icon icon);
  void end_on_screen();
  void set_button(const std::string& caption);

  SessionParts parts_;
  SessionView& view_;
  std::span<const Operation> operations_;
  StatisticsOperations statistics_;
  platform::Trap trap_;
  std::unique_ptr<platform::Window> window_;
  std::string caption_;
  std::int16_t sequence_ = 0;
  bool info_visible_ = true;
  bool refused_ = false;
  bool started_ = false;
  bool ended_ = false;
  bool closed_ = false;
};

}  // namespace qvrcom::session
