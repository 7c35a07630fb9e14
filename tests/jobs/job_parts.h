#pragma once

#include "base/session_values.h"
#include "doubles/manual_clock.h"
#include "doubles/memory_data.h"
#include "jobs/job_index.h"
#include "jobs/script_writer.h"

namespace qvrcom::jobs {

// The job classes on memory files, with the job Nov1526121005000 of 15 November 2026 12:10:05 at hand.
struct JobParts : doubles::MemoryData {
  JobParts() {
    machine.special_folders = {{35, "C:\\Data"}, {46, "C:\\Docs"}};
    files.make_folders("C:\\Data\\Corbelin\\QVRCOM+\\Scheduler");
    session.run.SchedulerFolder = "S:\\";
    files.folders.insert("S:");
    session.site.SiteID = "17";
    session.job.SessionStart = clock.time;
  }

  std::string& file(const std::string& name) { return files.content["S:\\" + name]; }

  doubles::ManualClock clock;
  base::Session session;
  SchedulerFiles scheduler{session.run, folders, files};
  FileHelpers helpers{scheduler, folders, files, ui};
  ScriptWriter writer{session.job, scheduler, helpers, files, ui};
  JobIndex index{session.site, session.job, scheduler, helpers, clock, ui};
};

// A failing disk: every operation of this name throws.
inline auto failing(std::string_view operation, const char* description) {
  return [=](std::string_view each, const std::string& path) {
    if (each == operation) throw base::Fault(description, path);
  };
}

}  // namespace qvrcom::jobs
