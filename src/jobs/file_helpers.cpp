#include "jobs/file_helpers.h"

#include <algorithm>
#include <vector>

#include "base/fault.h"
#include "base/number.h"
#include "protocol/job_name.h"
#include "protocol/job_report.h"

namespace qvrcom::jobs {

void refuse_link(const platform::Files& files, const std::string& folder) {
  if (files.is_link(folder))
    throw base::Fault(base::kPermissionDenied, "\"" + files.native(folder) +
                                                   "\" is a link, which is not followed. Remove it by hand.");
}

void delete_job_folder(platform::Files& files, const std::string& folder) {
  refuse_link(files, folder);
  const std::string script = protocol::script_path(folder);
  const std::string report = protocol::report_path(folder);
  std::vector<std::string> paths;
  for (const std::string& name : files.list(folder))
    paths.push_back(folder + "\\" + name);
  const auto rank = [&](const std::string& path) { return path == report ? 2 : path == script ? 1 : 0; };
  std::sort(paths.begin(), paths.end(),
            [&](const auto& left, const auto& right) { return rank(left) < rank(right); });
  for (const std::string& path : paths)
    files.remove(path);
  files.remove_folder(folder);
}

bool same_bytes(const platform::Files& files, const std::string& left, const std::string& right) {
  return files.file_exists(left) && files.file_exists(right) && files.length(left) == files.length(right) &&
         files.length(left) <= platform::Files::kReadLimit && files.read(left) == files.read(right);
}

void FileHelpers::Create_File(const std::string& file_name) {
  trap_("Create_File", [&] {
    files_.append(scheduler_.path(file_name), {});
    ui_.pump_events();
  });
}

void FileHelpers::Create_Folders() {
  trap_("Create_Folders", [&] {
    for (std::string folder : {folders_.GetMsgsFolder({}), scheduler_.folder(), folders_.GetStatsFolder({}),
                               folders_.GetSAMELogsFolder()}) {
      if (ExistedFolder(folder, {})) continue;
      folder.pop_back();  // the backslash
      files_.make_folder(folder);
    }
  });
}

bool FileHelpers::ExistedFolder(const std::string& first, const std::string& second) {
  return trap_("ExistedFolder", [&] { return files_.folder_exists(first + second); });
}

std::string FileHelpers::ProperMsgNo(const std::string& number) {
  return trap_("ProperMsgNo", [&]() -> std::string {
    const int value = base::to_int16(number);
    const char* zeros = value < 10 ? "00" : value < 100 ? "0" : "";
    return zeros + std::to_string(value);
  });
}

std::string FileHelpers::ProperPartID(const std::string& number) {
  return trap_("ProperPartID", [&]() -> std::string {
    const int value = base::to_int16(number);
    const std::string text = std::to_string(value);
    // Partitions go from 1 to 64: more digits than two are cut off in front.
    return value >= 10 ? text.substr(text.size() - 2) : "0" + text.substr(text.size() - 1);
  });
}

}  // namespace qvrcom::jobs
