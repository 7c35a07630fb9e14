#include "session/file_rescue.h"

#include <algorithm>

#include "base/fault.h"
#include "environment/files_and_folders.h"
#include "images/decoding.h"
#include "jobs/file_helpers.h"
#include "jobs/job_findings.h"
#include "jobs/job_log.h"
#include "protocol/device_files.h"
#include "protocol/job_name.h"
#include "session/job_steps.h"

namespace qvrcom::session {
namespace {

using jobs::AccountFindings;

constexpr const char* kConfiguration = "1";  // what is received is decoded under it

std::string name_of(const std::string& path) {
  return path.substr(path.rfind('\\') + 1);
}

// What was copied.
struct Rescue {
  std::string folder;              // suite path with a backslash at its end; "" when there was nothing
  std::vector<std::string> names;  // of the files in it
  bool has_deleted = false;        // the device has been told to delete some of it, or may have been
};

class Rescuer {
 public:
  Rescuer(const BusinessRulesParts& parts, const std::string& job_name, const protocol::ScriptHeader& header)
      : parts_(parts),
        job_name_(job_name),
        header_(header),
        folder_(parts.folders.GetRescuedFolder() + job_name + "\\") {}

  // Every plain file but the script, which holds an access code.
  void save_all(const std::string& job_folder) {
    rescue_.has_deleted = true;
    for (const std::string& name : parts_.files.list(job_folder)) {
      if (name.ends_with(protocol::kScriptExtension)) continue;
      copy(job_folder + "\\" + name);
    }
  }

  void save(const AccountFindings& account, bool decodes) {
    rescue_.has_deleted |= account.has_deleted;
    for (const AccountFindings::Fetch& fetch : account.fetches) {
      if (!fetch.arrived) continue;
      copy(fetch.path);
    }
    if (decodes && account.missing().size() < account.fetches.size()) save_statistics(account);
  }

  Rescue take() { return std::move(rescue_); }

 private:
  void make_folders() {
    if (!rescue_.folder.empty()) return;
    for (std::string folder : {parts_.folders.GetRescuedFolder(), folder_}) {
      folder.pop_back();
      if (!parts_.files.folder_exists(folder)) parts_.files.make_folder(folder);
    }
    rescue_.folder = folder_;
  }

  // The first name, of `name`, "name (2)" and so on, that is free or, by `is_same`, holds these bytes
  // already.
  template <class IsSame>
  std::string place_for(const std::string& name, IsSame is_same) const {
    const std::size_t dot = std::min(name.rfind('.'), name.size());
    std::string place = name;
    for (int number = 2; parts_.files.is_taken(folder_ + place) && !is_same(folder_ + place); ++number)
      place = name.substr(0, dot) + " (" + std::to_string(number) + ")" + name.substr(dot);
    return place;
  }

  void copy(const std::string& path) {
    make_folders();
    const std::string name = place_for(
        name_of(path), [&](const std::string& there) { return jobs::same_bytes(parts_.files, path, there); });
    if (!parts_.files.is_taken(folder_ + name)) parts_.files.copy(path, folder_ + name);
    rescue_.names.push_back(name);
  }

  void write(const std::string& wanted, const std::string& text) {
    const platform::Files& files = parts_.files;
    const std::string name = place_for(wanted, [&](const std::string& there) {
      return files.file_exists(there) && files.length(there) == text.size() && files.read(there) == text;
    });
    if (!files.is_taken(folder_ + name)) parts_.files.replace(folder_ + name, text);
    rescue_.names.push_back(name);
  }

  void save_statistics(const AccountFindings& account) {
    const std::string partition = account.account.starts_with(protocol::kAccountWord)
                                      ? account.account.substr(protocol::kAccountWord.size())
                                      : "";
    const std::string name = "StatisticsP" + partition + ".csv";
    if (const auto* csv = account.arrived(protocol::kStatisticsTable)) {
      write(name, site_lines(header_.site_name, header_.site_id) + parts_.files.read(csv->path));
    } else if (account.arrived(protocol::kLineStatistics) != nullptr ||
               account.arrived(protocol::kNodeStatistics) != nullptr) {
      decode(account, partition, name);
    }
  }

  // What cannot be decoded is there as it came; the job's log tells why it has no CSV.
  void decode(const AccountFindings& account, const std::string& partition, const std::string& wanted) {
    std::string answer;
    const std::string name = place_for(wanted, [](const std::string&) { return false; });
    const auto fault = base::fault_of([&] { answer = decoded(account, partition, folder_ + name); });
    if (fault) answer = fault->description() + ". " + fault->detail();
    if (answer.starts_with(images::kDone)) {
      rescue_.names.push_back(without_a_twin(wanted, name));
    } else {
      jobs::write_job_log(parts_.files, parts_.clock, parts_.folders.GetLogsFolder(), job_name_,
                          "There is no CSV of the rescued statistics. " + answer);
    }
  }

  // What was written as `name` goes again where an earlier file holds the same.
  std::string without_a_twin(const std::string& wanted, const std::string& name) {
    const std::string first = place_for(wanted, [&](const std::string& there) {
      return there == folder_ + name || jobs::same_bytes(parts_.files, folder_ + name, there);
    });
    if (first != name) parts_.files.remove(folder_ + name);
    return first;
  }

  // A file that has not arrived is decoded too: what was decoded before it must not pass for it.
  std::string decoded(const AccountFindings& account, const std::string& partition, const std::string& csv) {
    const auto decoder = parts_.components.create(images::kPartitionDecoder);
    const std::string lines =
        images::answer_of(*decoder, "DecodeLineStats",
                          {kConfiguration, partition, path_of(account, protocol::kLineStatistics)});
    const std::string nodes =
        images::answer_of(*decoder, "DecodeNodeStats",
                          {kConfiguration, partition, path_of(account, protocol::kNodeStatistics)});
    if (lines != images::kDone && nodes != images::kDone) return lines + " " + nodes;
    const auto writer = parts_.components.create(images::kStatisticsWriter);
    return images::answer_of(*writer, "WriteStatsCsvTo", {kConfiguration, partition, csv});
  }

  static std::string path_of(const AccountFindings& account, std::string_view remote) {
    const auto fetch = std::find_if(account.fetches.begin(), account.fetches.end(),
                                    [&](const auto& each) { return each.remote == remote; });
    return fetch == account.fetches.end() ? std::string{} : fetch->path;
  }

  const BusinessRulesParts& parts_;
  const std::string& job_name_;
  const protocol::ScriptHeader& header_;
  const std::string folder_;
  Rescue rescue_;
};

platform::Message message_about(const platform::Files& files, const Rescue& rescue) {
  std::string names;
  for (const std::string& name : rescue.names)
    names += (names.empty() ? "" : ", ") + name;
  return {
      .text = "What the device sent is kept in " + files.native(rescue.folder) + ".",
      .title = platform::kSuiteTitle,
      .icon = platform::Icon::kWarning,
      .detail =
          names + (rescue.has_deleted ? ". The device has been told to delete at least a part of it." : ".")};
}

bool is_meant(const AccountFindings& account, const std::vector<std::string>& accounts) {
  return accounts.empty() || std::find(accounts.begin(), accounts.end(), account.account) != accounts.end();
}

}  // namespace

bool bring_to_safety(const BusinessRulesParts& parts, const std::string& job_name, RescueWhat what,
                     const std::vector<std::string>& accounts) {
  const std::string folder = environment::scheduler_folder(parts.session.run, parts.folders) + job_name;
  if (!protocol::is_job_name(job_name) || !parts.files.folder_exists(folder)) return false;
  const auto found = jobs::findings_of(parts.files, folder);
  if (found && what != RescueWhat::kEverything && !found->has_deleted) return false;
  const protocol::ScriptHeader header = found ? found->script.header : protocol::ScriptHeader{};
  Rescuer rescuer(parts, job_name, header);
  if (!found) rescuer.save_all(folder);
  if (found) {
    for (const AccountFindings& account : found->accounts)
      if (is_meant(account, accounts) && (account.taken.empty() || !accounts.empty()))
        rescuer.save(account, what != RescueWhat::kAsTheyCame);
  }
  const Rescue rescue = rescuer.take();
  if (rescue.names.empty()) return false;
  parts.ui.show(message_about(parts.files, rescue));
  return true;
}

}  // namespace qvrcom::session
