#include "rules/file_rescue.h"

#include <algorithm>

#include "base/fault.h"
#include "images/component_answer.h"
#include "rules/job_steps.h"

namespace qvrcom::rules {
namespace {

using results::AccountFindings;

constexpr std::string_view kAccountWord = "part";
constexpr const char* kConfiguration = "1";  // what is received is decoded under it

std::string name_of(const std::string& path) {
  return path.substr(path.rfind('\\') + 1);
}

class Rescuer {
 public:
  Rescuer(const BusinessRulesParts& parts, const std::string& job_name, const jobs::ScriptHeader& header)
      : parts_(parts), header_(header), folder_(parts.folders.GetRescuedFolder() + job_name + "\\") {}

  void save(const AccountFindings& account) {
    for (const AccountFindings::Fetch& fetch : account.fetches) {
      if (!fetch.arrived) continue;
      make_folders();
      parts_.files.copy(fetch.path, keep(name_of(fetch.path)));
    }
    if (account.missing().size() < account.fetches.size()) save_statistics(account);
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

  std::string keep(const std::string& name) {
    rescue_.names.push_back(name);
    return folder_ + name;
  }

  void save_statistics(const AccountFindings& account) {
    const std::string partition =
        account.account.starts_with(kAccountWord) ? account.account.substr(kAccountWord.size()) : "";
    const std::string name = "StatisticsP" + partition + ".csv";
    if (const auto* csv = account.arrived("allstats.csv")) {
      parts_.files.replace(keep(name),
                           site_lines(header_.site_name, header_.site_id) + parts_.files.read(csv->path));
    } else if (account.arrived("linestat") != nullptr || account.arrived("nodestat") != nullptr) {
      decode(account, partition, name);
    }
  }

  // What cannot be decoded is there as it came; the job's log tells why it has no CSV.
  void decode(const AccountFindings& account, const std::string& partition, const std::string& name) {
    std::string answer;
    const auto fault = base::fault_of([&] { answer = decoded(account, partition, folder_ + name); });
    if (fault) answer = fault->description() + ". " + fault->detail();
    if (answer.starts_with(images::kDone)) {
      rescue_.names.push_back(name);
    } else {
      log_to_job(parts_, "There is no CSV of the rescued statistics. " + answer);
    }
  }

  // A file that has not arrived is decoded too: what was decoded before it must not pass for it.
  std::string decoded(const AccountFindings& account, const std::string& partition, const std::string& csv) {
    const auto decoder = parts_.components.create(images::kPartitionDecoder);
    const std::string lines = images::answer_of(*decoder, "DecodeLineStats",
                                                {kConfiguration, partition, path_of(account, "linestat")});
    const std::string nodes = images::answer_of(*decoder, "DecodeNodeStats",
                                                {kConfiguration, partition, path_of(account, "nodestat")});
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
  const jobs::ScriptHeader& header_;
  const std::string folder_;
  Rescue rescue_;
};

}  // namespace

Rescue rescue_files(const BusinessRulesParts& parts, const std::string& job_name,
                    const results::JobFindings& found, const std::vector<std::string>& accounts) {
  Rescuer rescuer(parts, job_name, found.script.header);
  for (const AccountFindings& account : found.accounts) {
    const bool meant =
        accounts.empty() || std::find(accounts.begin(), accounts.end(), account.account) != accounts.end();
    if (meant) rescuer.save(account);
  }
  Rescue rescue = rescuer.take();
  rescue.has_deleted = found.has_deleted;
  return rescue;
}

platform::Message rescue_message(const platform::Files& files, const Rescue& rescue) {
  std::string names;
  for (const std::string& name : rescue.names)
    names += (names.empty() ? "" : ", ") + name;
  return {.text = "What the device sent is kept in " + files.native(rescue.folder) + ".",
          .title = platform::kSuiteTitle,
          .icon = platform::Icon::kWarning,
          .detail = names + (rescue.has_deleted ? ". The device has been told to delete it." : ".")};
}

}  // namespace qvrcom::rules
