#include "programs/suite.h"

#include "adapters/component_plugins.h"
#include "adapters/posix_fault.h"
#include "components/database_components.h"
#include "components/image_components.h"
#include "components/statistics_component.h"
#include "requests/session_progress.h"

namespace qvrcom::programs {

Suite::Suite(platform::UserInterface& user, session::SessionGate::WhenBusy when_busy, std::string edit_site)
    : ui({user, files, folders, session.job, std::move(edit_site)}),
      engine(files),
      channel(layout.run_folder, layout.runtime_folder),
      scheduler(layout.run_folder, layout.runtime_folder),
      connection(engine, folders),
      database(connection),
      dbase(connection),
      sites(connection),
      scheduler_files(session.run, folders, files),
      jobs(scheduler_files),
      link({session, ui, clock, files, programs, channel, folders}),
      gate(session_lock, ui, std::move(when_busy),
           [this] { return requests::running_line(scheduler.status().status); }) {
  components::add_database_components(components, connection);
  components::add_image_components(components, connection, files);
  components::add_statistics_component(components, {connection, dbase, folders, files, ui});
  add_plugins();
}

// A plug-in's component takes the place of the bundled one.
void Suite::add_plugins() {
  adapters::ComponentPlugins plugins = adapters::load_component_plugins(layout.plugin_folder);
  for (adapters::OfferedComponent& offered : plugins.components)
    components.add(offered.name, std::move(offered.create));
  plugin_problems_ = std::move(plugins.problems);
}

void Suite::report_plugin_problems() {
  if (plugin_problems_.empty()) return;
  platform::Message message;
  for (const std::string& problem : plugin_problems_)
    message.text += (message.text.empty() ? "" : "\r\n") + problem;
  message.title = platform::kSuiteTitle;
  message.icon = platform::Icon::kWarning;
  message.detail = "Plug-ins are taken from \"" + layout.plugin_folder + "\".";
  ui.show(message);
}

environment::MachineFolders Suite::proposed_folders() const {
  return {adapters::suite_path(layout.app_data_folder), adapters::suite_path(layout.documents_folder),
          machine.program_folder()};
}

}  // namespace qvrcom::programs
