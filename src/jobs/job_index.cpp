#include "jobs/job_index.h"

#include "base/date_serial.h"
#include "base/text.h"
#include "jobs/sorted_lines.h"
#include "protocol/index_line.h"
#include "protocol/job_lists.h"
#include "protocol/job_name.h"

namespace qvrcom::jobs {
namespace {

std::vector<std::string_view> non_empty_lines_of(std::string_view text) {
  std::vector<std::string_view> lines = base::lines_of(text);
  std::erase_if(lines, [](std::string_view line) { return line.empty(); });
  return lines;
}

}  // namespace

void JobIndex::Write_Index(const std::string& site_name, const std::string& site_id,
                           const std::string& description, const std::string& start_date,
                           const std::string& interval, const std::string& period) {
  trap_("Write_Index", [&] {
    const char* file = job_.NewJob ? protocol::kIndexFile : protocol::kRescheduleFile;
    const base::LocalTime now = clock_.now();
    job_.JobId = protocol::index_line_text(
        {.creation = job_.NewJob ? base::serial_text(now) : base::serial_text(job_.RescheduleValue),
         .created = base::index_stamp(job_.NewJob ? now : job_.SessionStart),
         .description = description,
         .site_name = site_name,
         .site_id = site_id,
         .start = start_date,
         .interval = interval,
         .period = period,
         .device_id = site_.SiteID,
         .script_path = protocol::script_path(job_.Folder)});
    Append_Line(file, job_.JobId);
    Sort_File(file);
  });
}

void JobIndex::Sort_File(const std::string& file_name) {
  trap_("Sort_File", [&] {
    const std::string text = scheduler_.read(file_name);
    ReWrite_File(file_name, sorted_text(non_empty_lines_of(text)));
  });
}

void JobIndex::ReWrite_File(const std::string& file_name, const std::string& text) {
  trap_("ReWrite_File", [&] { scheduler_.replace(file_name, text + std::string(base::kCrLf)); });
}

void JobIndex::Remove_Index_Line(const std::string& file_name, const std::string& line) {
  const std::string text = scheduler_.read(file_name);
  std::vector<std::string_view> kept = non_empty_lines_of(text);
  std::erase_if(kept, [&](std::string_view each) { return base::equals_ignoring_case(each, line); });
  if (file_name == protocol::kIndexFile) return ReWrite_File(file_name, sorted_text(std::move(kept)));
  std::string rest;
  for (const std::string_view each : kept)
    rest.append(each).append(base::kCrLf);
  ReWrite_File(file_name, rest);
  Sort_File(protocol::kIndexFile);
}

void JobIndex::remove_index_lines(const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  SortedLines index(scheduler_.read(protocol::kIndexFile));
  for (const std::string& line : lines) {
    if (&line != &lines.front()) index.settle();
    index.remove(line);
  }
  ReWrite_File(protocol::kIndexFile, index.text());
}

void JobIndex::Validate_Index_File() {
  trap_("Validate_Index_File", [&] {
    const std::string text = scheduler_.read(protocol::kIndexFile);
    std::vector<std::string> orphans;
    for (const std::string_view line : base::lines_of(text)) {
      if (!helpers_.ExistedFolder(scheduler_.folder(), Get_Folder(line))) orphans.emplace_back(line);
    }
    remove_index_lines(orphans);
  });
}

std::string JobIndex::Get_Folder(std::string_view line) {
  const auto fields = base::split(line, ";");
  if (fields.size() < 3) return std::string(line);
  const auto names = base::split(fields[2], "\\");
  return std::string(names.size() < 2 ? fields[2] : names[names.size() - 2]);
}

void JobIndex::Read_Lines(const std::string& file_name, std::vector<std::string>& lines, bool& found) {
  const std::string text = scheduler_.read(file_name);
  const auto read = non_empty_lines_of(text);
  lines.assign(read.begin(), read.end());
  if (!lines.empty()) found = true;
}

void JobIndex::Append_Line(const std::string& file_name, const std::string& line) {
  scheduler_.append_line(file_name, line);
}

}  // namespace qvrcom::jobs
