#include "session/same_log_operations.h"

#include <chrono>

#include "base/text.h"
#include "protocol/script_grammar.h"
#include "session/job_steps.h"
#include "session/operations.h"

namespace qvrcom::session {
namespace {

constexpr const char* kFile = "same.log";

// Parts of a path that has a folder of its own to be named after: root, two folders, file.
constexpr std::size_t kNamedParts = 4;

// "2026-11-15_12-10-5": numbers as they are.
std::string moment_text(base::LocalTime moment) {
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(moment - day);
  const auto text = [](auto number) { return std::to_string(number); };
  return text(static_cast<int>(date.year())) + "-" + text(static_cast<unsigned>(date.month())) + "-" +
         text(static_cast<unsigned>(date.day())) + "_" + text(time.hours().count()) + "-" +
         text(time.minutes().count()) + "-" + text(time.seconds().count());
}

}  // namespace

void SameLogOperations::RetrieveSAME_Log() {
  trap_("RetrieveSAME_Log", [&] {
    write(local_file());
    frame_.submit({.outcome_routine = [&] { process_outcome(); }, .step = "Retrieving SAME Log"});
  });
}

void SameLogOperations::process_outcome() {
  ProcessRetrieveSameLog_NewQVR(local_file(), session_.site.SiteName, session_.site.UserSiteID);
}

std::string SameLogOperations::local_file() const {
  return session_.job.Folder + "\\" + kFile;
}

void SameLogOperations::write(const std::string& local_file) {
  frame_.show_step("Creating Script");
  rules_.Write_Script_Header(script_header(session_, operation::kRetrieveSameLog));
  rules_.Write_Script(protocol::commands_text({protocol::get_file("same.log", local_file)}));
  rules_.Write_Script_End();
  write_index(rules_, session_, operation::kRetrieveSameLog);
}

void SameLogOperations::ProcessRetrieveSameLog_NewQVR(const std::string& local_file,
                                                      const std::string& site_name,
                                                      const std::string& user_site_id) {
  Outcome outcome = SessionFrame::name_first("ProcessRetrieveSameLog_NewQVR", operation::kRetrieveSameLog);
  outcome.process = [&] {
    file_log(local_file, site_name, user_site_id);
    return Remainder{};
  };
  frame_.run_outcome(outcome);
}

void SameLogOperations::file_log(const std::string& local_file, const std::string& site_name,
                                 const std::string& user_site_id) {
  frame_.face().enable_button(false);
  frame_.face().show_hint(false);
  frame_.show_step("Processing Data ...");
  const std::string text = site_lines(site_name, user_site_id) + parts_.files.read(local_file);
  const std::string path = parts_.folders.GetSAMELogsFolder() + name_for(local_file);
  parts_.files.replace(path, text);
  frame_.result().same_log = path;
}

// Named after the job's folder. Where there is none, after the moment, and the next log gets another one.
std::string SameLogOperations::name_for(const std::string& local_file) const {
  const auto parts = base::split(local_file, "\\");
  if (parts.size() >= kNamedParts) {
    return std::string(parts[parts.size() - 2]).append(parts.back());
  }
  std::string name = moment_text(parts_.clock.now()) + kFile;
  parts_.clock.sleep(std::chrono::milliseconds(1000));
  return name;
}

}  // namespace qvrcom::session
