#include "session/device_view.h"

#include "base/text.h"
#include "protocol/script_grammar.h"
#include "session/job_steps.h"
#include "session/operations.h"

namespace qvrcom::session {

void DeviceView::retrieve_index() {
  trap_("View_QVR", [&] {
    write();
    frame_.run_now({.outcome_routine = [&] { Process_ViewQVR(); }, .quiet = true});
  });
}

void DeviceView::write() {
  frame_.show_step("Creating Script");
  const std::string partition(base::trim(session_.run.PartitionID));
  rules_.Write_Script_Header(script_header(session_, operation::kRetrieveAllMessageIndexes));
  const std::string index_file = session_.job.Folder + "\\msgindexP" + partition + ".dat";
  rules_.Write_Script(protocol::commands_text(
      {protocol::select_partition(partition), protocol::get_file("msgindex", index_file)}));
  rules_.Write_Script_End();
  write_index(rules_, session_, operation::kRetrieveAllMessageIndexes);
}

void DeviceView::Process_ViewQVR() {
  Outcome outcome = SessionFrame::name_first("Process_ViewQVR", operation::kViewDevice);
  if (!session_.run.LastSite) outcome.completed = outcome.error = outcome.cancelled = {};
  outcome.process = [&] {
    take_index();
    return Remainder{};
  };
  frame_.run_outcome(outcome);
}

void DeviceView::take_index() {
  frame_.face().enable_button(false);
  frame_.show_step("Processing Data ...");
  rules_.Process_CompletedSch_File();
  if (!rules_.MissingDownloads.empty())
    frame_.result().missing = "The device's message index did not arrive.";
}

}  // namespace qvrcom::session
