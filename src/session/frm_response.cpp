#include "session/frm_response.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "base/fault.h"
#include "base/text.h"
#include "protocol/messages.h"
#include "session/file_rescue.h"
#include "session/job_steps.h"
#include "session/refusals.h"

namespace qvrcom::session {
namespace {

// How an entry of this kind judges the site: with a verdict of the firmware rules.
struct Check {
  EntryKind entry;
  std::string (*verdict)(BusinessRules&, const base::SiteValues&);
};

const Check kChecks[] = {
    {EntryKind::kVersionCheck,
     [](BusinessRules& rules, const base::SiteValues& site) {
       return rules.Check_Firmware_Version(site.FirmwareVersion);
     }},
    {EntryKind::kFullCheck,
     [](BusinessRules& rules, const base::SiteValues& site) {
       if (site.MachineType.empty()) {
         rules.Get_Current_Config();
         rules.QVRSettings_MachineTypeID();
       }
       return rules.Version_Compactibility(site.FirmwareVersion, site.MachineType);
     }},
};

// Three digits, more when it has more.
std::string sequence_text(int number) {
  const std::string digits = std::to_string(number);
  return digits.size() < 3 ? std::string(3 - digits.size(), '0') + digits : digits;
}

}  // namespace

frmResponse::frmResponse(const SessionParts& parts, SessionView& view,
                         std::span<const Operation> known_operations)
    : SessionFrame(parts.rules, parts.link, parts.control, view),
      parts_(parts),
      session_(parts.rules.session),
      ui_(parts.rules.ui),
      operations_(known_operations),
      statistics_(parts.rules, *this),
      all_partitions_(parts.rules, *this),
      same_log_(parts.rules, *this),
      view_(parts.rules, *this),
      trap_(parts.rules.ui) {}

bool frmResponse::Form_Load() {
  return trap_("Form_Load", [&] {
    environment::scheduler_folder(session_.run, parts_.rules.folders);
    window_ = parts_.channel.open_window(
        protocol::kDialogTitle,
        [](platform::WindowHandle, platform::MessageId, std::uint64_t, std::int64_t) { return 0; });
    parts_.link.install(*window_);
    return true;
  });
}

void frmResponse::Form_Unload() {
  if (window_) parts_.link.remove(*window_);
  window_.reset();
}

void frmResponse::Form_Activate() {
  if (ended_ || cancelling_) return;
  prepare();
  if (started_) return;
  started_ = true;
  trap_("Form_Activate", [&] { run_operation(); });
  ended_ = true;
  when_activated_();
}

void frmResponse::prepare() {
  session_.run.CancelRequested = false;
  face().set_timer(true);
  face().show_info(true);
  face().offer(DialogFace::kCancel);
  face().set_hint(kHint);
  face().show_hint(true);
}

const Operation* frmResponse::known_operation(std::string_view name) const {
  const auto known = std::find_if(operations_.begin(), operations_.end(),
                                  [&](const Operation& operation) { return operation.name == name; });
  return known == operations_.end() ? nullptr : &*known;
}

void frmResponse::run_operation() {
  if (is_late_) return run_late_outcome();
  const std::string name = session_.run.CurrentOperation;
  const Operation* known = known_operation(name);
  if (known == nullptr) return;
  switch (known->entry) {
    case EntryKind::kCommand:
      return ProcessSystemCommand(name);
    case EntryKind::kView:
      return View_QVR(*known);
    default:
      return run_sites(*known, name);
  }
}

void frmResponse::run_late_outcome() {
  const std::string name = session_.run.CurrentOperation;
  session_.run.LastSite = true;
  face().set_info(name);
  const Operation* known = known_operation(name);
  if (name == operation::kRetrieveResetAllStatistics) {
    all_partitions_.process_outcome();
  } else if (known != nullptr && known->outcome != nullptr) {
    SiteOperations all{statistics_, same_log_, view_};
    known->outcome(all);
  } else {
    keep_late_files();
  }
  end_on_screen();
}

// Whoever ordered the files does not wait for them any more: they are put where people find them.
void frmResponse::keep_late_files() {
  Outcome outcome = name_first("ProcessSystemCommand", session_.run.CurrentOperation);
  outcome.process = [&] {
    bring_to_safety(parts_.rules, session_.job.Name, RescueWhat::kEverything);
    return Remainder{};
  };
  run_outcome(outcome);
}

// Who wrote the job removes its folder, and tells the scheduler that the session is over.
void frmResponse::ProcessSystemCommand(const std::string& operation_name) {
  face().set_info(operation_name);
  trap_("ProcessSystemCommand", [&] { WaitForScheduler(); });
  Outcome outcome = name_first("ProcessSystemCommand", operation_name);
  outcome.keeps_folder = true;
  outcome.process = [&] {
    rules().Process_CompletedSch_File();
    return Remainder{};
  };
  run_outcome(outcome);
  end_on_screen();
  const bool nobody_tells = !session_.run.SystemCommandActive && !session_.run.CancelRequested;
  if (nobody_tells) parts_.link.NotifyScheduler(protocol::SchedulerRequest::kSessionOver);
}

void frmResponse::View_QVR(const Operation& operation) {
  const std::vector<std::string> sites = session_.site.SelectedSites;
  session_.run.LastSite = false;
  for (std::size_t i = 0; i + 1 < sites.size() && !session_.run.CancelRequested; ++i) {
    if (i > 0) prepare();
    session_.run.LastSite = i + 2 == sites.size();
    trap_("View_QVR", [&] { view_site(operation, sites[i]); });
  }
  if (session_.run.LastSite) end_on_screen();
}

void frmResponse::view_site(const Operation& operation, const std::string& site) {
  show_step(std::string(operation.name));
  if (session_.run.CancelRequested) return;
  rules().Get_Site(site);
  const std::string suffix = kPlainSuffix;
  take_base_time(parts_.rules, {&suffix, 1});
  take_immediate_times(session_.job);
  run_in_folder(suffix, [&] { run_routine(operation); });
}

// The loop's steps for its first site alone.
void frmResponse::ReceiveResetStat_NewQVR() {
  if (cancelling_) return;
  ended_ = false;
  trap_("ReceiveResetStat_NewQVR", [&] {
    const std::vector<std::string>& sites = session_.site.SelectedSites;
    if (sites.size() < 2) throw base::Fault(base::kSubscriptOutOfRange, "No site is selected.");
    number_jobs(sites.size());
    rules().Get_Site(sites[0]);
    session_.run.LastSite = true;
    rules().Update_SiteID_in_SessionQVR();
    run_in_folder(NextSequenceText(), [&] { all_partitions_.ReceiveResetStat_NewQVR(); });
  });
  end_on_screen();
  ended_ = true;
}

// The last element of SelectedSites is spare.
void frmResponse::run_sites(const Operation& operation, const std::string& operation_name) {
  const std::vector<std::string> sites = session_.site.SelectedSites;
  session_.run.LastSite = false;
  number_jobs(sites.size());
  for (std::size_t i = 0; i + 1 < sites.size() && !session_.run.CancelRequested; ++i) {
    if (i > 0) prepare();
    refused_ = false;
    rules().Get_Site(sites[i]);
    session_.run.LastSite = i + 2 == sites.size();
    trap_("Form_Activate", [&] { run_site(operation, operation_name); });
  }
  if (session_.run.LastSite) end_on_screen();
}

// One base time for the whole run; the sequence tells its sites' jobs apart.
void frmResponse::number_jobs(std::size_t sites) {
  std::vector<std::string> suffixes;
  for (std::size_t i = 1; i < sites; ++i)
    suffixes.push_back(sequence_text(sequence_ + static_cast<int>(i)));
  take_base_time(parts_.rules, suffixes);
  if (session_.run.ImmediateRun) take_immediate_times(session_.job);
}

void frmResponse::run_site(const Operation& operation, const std::string& operation_name) {
  show_step(operation_name);
  if (session_.run.CancelRequested || !passes(operation.entry)) return;
  rules().Update_SiteID_in_SessionQVR();
  if (!is_new_kind()) return;
  run_in_folder(NextSequenceText(), [&] { run_routine(operation); });
}

// A routine that gave up before it wrote anything leaves nothing behind.
void frmResponse::run_in_folder(const std::string& suffix, const std::function<void()>& routine) {
  session_.job.JobId.clear();
  session_.job.Suffix = suffix;
  rules().Create_Dir();
  platform::Files& files = parts_.rules.files;
  const std::string folder = session_.job.Folder;
  if (!files.folder_exists(folder)) return;
  posted_ = false;
  routine();
  // A job that failed before the scheduler was told of it would be run with the next one.
  const bool is_left = session_.run.ImmediateRun && !posted_ && session_.run.SessionStatus.empty();
  if (is_left && files.folder_exists(folder)) rules().Remove_Folder();
  if (files.folder_exists(folder) && files.list(folder).empty()) files.remove_folder(folder);
}

void frmResponse::run_routine(const Operation& operation) {
  SiteOperations all{statistics_, same_log_, view_};
  operation.per_site(all);
}

bool frmResponse::passes(EntryKind entry) {
  const auto check = std::find_if(std::begin(kChecks), std::end(kChecks),
                                  [&](const Check& candidate) { return candidate.entry == entry; });
  if (check == std::end(kChecks)) return true;
  const auto refusal = refusal_of(check->verdict(rules(), session_.site), session_.site);
  if (refusal) refuse(*refusal);
  return !refusal;
}

void frmResponse::refuse(const platform::Message& refusal) {
  ui_.show(refusal);
  refused_ = true;
  face().set_timer(false);
  face().set_hint(site_block(session_.site) + std::string(base::kCrLf) + "Action Not Taken");
  face().show_hint(true);
  face().show_button(false);
}

bool frmResponse::is_new_kind() {
  if (session_.site.DeviceGeneration == "NEW") return true;
  ui_.show({.text = "Not implement for Old QVR yet",
            .title = platform::kSuiteTitle,
            .icon = platform::Icon::kInformation});
  return false;
}

void frmResponse::end_on_screen() {
  face().set_timer(false);
  face().show_info(true);
  face().offer(DialogFace::kOk);
  if (!refused_) face().show_hint(false);
  ui_.pump_events();
}

std::string frmResponse::NextSequenceText() {
  if (sequence_ == std::numeric_limits<std::int16_t>::max()) {
    throw base::Fault(base::kOverflow, "One dialog can number 32767 jobs. Close it and start again.");
  }
  return sequence_text(++sequence_);
}

void frmResponse::UpdateListExtent(const std::string& text, ExtentList& list) {
  const double pixels = list.text_width("  " + text) / list.units_per_pixel();
  widest_ = std::max(widest_, static_cast<int>(std::lround(pixels)));
  list.set_horizontal_extent(widest_);
}

// The view closes last: the request may still show a box over it.
void frmResponse::cmdCancel_Click() {
  if (cancelling_ || !face().button_works()) return;
  if (!face().says_ok()) {
    cancelling_ = true;
    trap_("cmdCancel_Click", [&] {
      parts_.link.NotifyScheduler(session_.run.CurrentOperation == operation::kTelnetSession
                                      ? protocol::SchedulerRequest::kShowTelnetSession
                                      : protocol::SchedulerRequest::kShowSession);
    });
    session_.run.CancelRequested = true;
  }
  face().view().close();
}

}  // namespace qvrcom::session
