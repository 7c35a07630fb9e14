#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "platform/message_channel.h"
#include "platform/trap.h"
#include "session/all_partitions.h"
#include "session/business_rules.h"
#include "session/device_view.h"
#include "session/operations.h"
#include "session/same_log_operations.h"
#include "session/scheduler_link.h"
#include "session/session_frame.h"
#include "session/session_view.h"
#include "session/statistics_operations.h"

namespace qvrcom::session {

// A list box that scrolls sideways as far as it is told to.
class ExtentList {
 public:
  virtual ~ExtentList() = default;

  // In the dialog's scale, which has so many units a pixel: 1 where it counts in pixels itself.
  virtual double text_width(const std::string& text) const = 0;
  virtual double units_per_pixel() const { return 1; }

  virtual void set_horizontal_extent(int pixels) = 0;
};

struct SessionParts {
  BusinessRulesParts rules;
  SchedulerLink& link;
  platform::MessageChannel& channel;
  platform::SchedulerControl& control;  // asked during a wait what becomes of the job
};

// The session dialog without its window: checks each selected site, has its job written and run, and tells
// the view what to show. Its window on the message channel is titled "RESPONSE DIALOG".
class frmResponse : public SessionFrame {
 public:
  frmResponse(const SessionParts& parts, SessionView& view,
              std::span<const Operation> known_operations = operations());

  // False when the scheduler could not reach the dialog (a box has said why): it must not be shown then.
  bool Form_Load();

  // The first activation prepares the dialog and runs `CurrentOperation`; it returns when the run has ended.
  // Another one meanwhile prepares again; after the end it does nothing.
  void Form_Activate();
  void Form_Unload();

  // "OK" closes; "Cancel" has JobPilot show the session, asks the run to end, and closes. A button that is
  // disabled or hidden does nothing.
  void cmdCancel_Click();
  void Timer1_Timer() { face().blink(); }

  // Called by the host while the dialog is shown for "Retrieve Reset Statistics All Partitions", after the
  // activation, which only prepares: runs the first selected site's job for all partitions.
  void ReceiveResetStat_NewQVR();

  // Done once, when the first activation has done its part.
  void when_activated(std::function<void()> routine) { when_activated_ = std::move(routine); }

  // The activation runs no operation but the outcome routine of the session's job, which ended while no
  // dialog waited for it.
  void expect_late_outcome() { is_late_ = true; }

  // The next job suffix: "001" to "099", "100" and above as they are. Fault "Overflow" beyond 32767.
  std::string NextSequenceText();

  // Lets the list scroll far enough for two blanks and this text, and for every text it was called with.
  void UpdateListExtent(const std::string& text, ExtentList& list);

  // Without a loop over sites: waits for a job that its caller has written, and runs its outcome.
  void ProcessSystemCommand(const std::string& operation_name);

  // Its own loop over the sites: the message index of the current partition from each.
  void View_QVR(const Operation& operation);

 private:
  void prepare();
  const Operation* known_operation(std::string_view name) const;  // null when there is none
  void run_operation();
  void run_late_outcome();
  void keep_late_files();
  void view_site(const Operation& operation, const std::string& site);
  void run_sites(const Operation& operation, const std::string& operation_name);
  void run_site(const Operation& operation, const std::string& operation_name);
  void number_jobs(std::size_t sites);
  void run_in_folder(const std::string& suffix, const std::function<void()>& routine);
  void run_routine(const Operation& operation);
  bool passes(EntryKind entry);
  bool is_new_kind();
  void refuse(const platform::Message& refusal);
  void end_on_screen();

  SessionParts parts_;
  base::Session& session_;
  platform::UserInterface& ui_;
  std::span<const Operation> operations_;
  StatisticsOperations statistics_;
  AllPartitions all_partitions_;
  SameLogOperations same_log_;
  DeviceView view_;
  platform::Trap trap_;
  std::function<void()> when_activated_ = [] {};
  std::unique_ptr<platform::Window> window_;
  std::int16_t sequence_ = 0;
  int widest_ = 0;           // text of UpdateListExtent, in pixels
  bool refused_ = false;     // the site at hand; its text stays on screen
  bool started_ = false;     // the operation runs or has run
  bool ended_ = false;       // it has run
  bool cancelling_ = false;  // Cancel was pressed
};

}  // namespace qvrcom::session
