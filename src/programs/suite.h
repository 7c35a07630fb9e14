#pragma once

#include <string>
#include <vector>

#include "adapters/database_qt.h"
#include "adapters/message_channel_local.h"
#include "adapters/scheduler_control_local.h"
#include "adapters/xml_rows_qt.h"
#include "components/component_registry.h"
#include "environment/command_set.h"
#include "environment/set_up.h"
#include "jobs/job_board.h"
#include "programs/host.h"
#include "requests/statistics_request.h"
#include "session/frm_response.h"
#include "session/reasoned_boxes.h"
#include "session/scheduler_link.h"
#include "session/session_gate.h"
#include "sitebook/site_book.h"

namespace qvrcom::programs {

// The library wired to the real machine, for a program with a user: its own part is the user interface and
// the windows of session dialog and viewer.
class Suite : public Host {
 public:
  // `when_busy` is asked when another program has the session; without it a box says who. `edit_site` is a
  // sentence: how this program opens a site's entry in the site book.
  explicit Suite(platform::UserInterface& user, session::SessionGate::WhenBusy when_busy = {},
                 std::string edit_site = "\"Edit Site...\" in the session's window opens it.");
  Suite(const Suite&) = delete;
  Suite& operator=(const Suite&) = delete;

  environment::SetUp set_up() { return {machine, machine, files, engine}; }
  // One box with what is wrong with the plug-ins; none when nothing is.
  void report_plugin_problems();
  // What set-up makes of this machine.
  environment::MachineFolders proposed_folders() const;

  session::SessionParts session_parts() { return {rules_parts(), link, channel, scheduler}; }
  requests::StatisticsRequestParts request_parts(session::SessionScreen& screen) {
    return {rules_parts(), database, gate, screen, link, sites};
  }

  base::Session session;
  session::ReasonedBoxes ui;
  adapters::QtDatabaseEngine engine;
  adapters::QtXmlRows xml_rows;
  adapters::MessageChannelLocal channel;
  adapters::SchedulerControlLocal scheduler;
  environment::DatabaseConnection connection;
  environment::DataBase database;  // the control's command set
  environment::DBase dbase;        // the rules' command set
  components::ComponentRegistry components;
  sitebook::SiteBook sites;
  jobs::SchedulerFiles scheduler_files;
  jobs::JobBoard jobs;
  session::SchedulerLink link;
  session::SessionGate gate;

 private:
  void add_plugins();
  session::BusinessRulesParts rules_parts() {
    return {session, ui, clock, files, folders, dbase, components, xml_rows};
  }

  std::vector<std::string> plugin_problems_;
};

}  // namespace qvrcom::programs
