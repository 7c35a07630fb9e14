#include "programs/suite.h"

#include "adapters/paths.h"
#include "components/database_components.h"
#include "components/image_components.h"
#include "components/statistics_component.h"

namespace qvrcom::programs {

Suite::Suite(platform::UserInterface& user, session::SessionGate::WhenBusy when_busy)
    : ui(user),
      engine(files),
      channel(layout.run_folder, layout.runtime_folder),
      scheduler(layout.run_folder, layout.runtime_folder),
      database(engine, folders),
      dbase(engine, folders),
      connection(engine, folders),
      sites(connection),
      scheduler_files(session.run, folders, files),
      jobs(scheduler_files),
      link({session, ui, clock, files, programs, channel, folders}),
      gate(session_lock, ui, std::move(when_busy)) {
  components::add_database_components(components, connection);
  components::add_image_components(components, connection, files);
  components::add_statistics_component(components, {connection, dbase, folders, files, ui});
}

environment::MachineFolders Suite::proposed_folders() const {
  return {adapters::suite_path(layout.app_data_folder), adapters::suite_path(layout.documents_folder),
          machine.program_folder()};
}

}  // namespace qvrcom::programs
