#include "results/job_findings.h"

#include <algorithm>

#include "jobs/job_name.h"

namespace qvrcom::results {
namespace {

using jobs::CommandKind;
using jobs::ReportWord;

std::optional<jobs::Script> script_in(const platform::Files& files, const std::string& folder) {
  const std::string path = jobs::job_file(folder, jobs::kScriptExtension);
  if (!files.file_exists(path) || files.length(path) > jobs::kScriptLimit) return std::nullopt;
  return jobs::read_script(files.read(path)).script;
}

// Goes through script and report side by side.
class Finder {
 public:
  Finder(const platform::Files& files, const std::string& folder, jobs::Script script)
      : files_(files), folder_(folder), report_(jobs::report_of(files, folder)) {
    found_.script = std::move(script);
  }

  JobFindings find() {
    bool deletes = false;
    for (const jobs::ScriptCommand& command : found_.script.commands) {
      if (command.kind == CommandKind::kAccount || found_.accounts.empty()) begin(command.account);
      if (command.kind == CommandKind::kGet) add_fetch(command);
      if (command.kind == CommandKind::kDelete && report_ && !is_deleted(command.remote))
        here().kept.push_back(command.remote);
      deletes |= command.kind == CommandKind::kDelete;
    }
    found_.has_deleted = report_ ? report_->has_deleted() : deletes && found_.has_files();
    return std::move(found_);
  }

 private:
  AccountFindings& here() { return found_.accounts.back(); }

  void begin(const std::string& account) {
    found_.accounts.push_back({account, {}, {}, {}});
    if (!report_) return;
    for (const jobs::ReportLine& line : report_->lines) {
      if (line.word == ReportWord::kFailed && line.account == account) here().reason = line.text;
    }
  }

  // The place of a local file is the job's folder, whatever the script says before its name.
  void add_fetch(const jobs::ScriptCommand& command) {
    const std::string path = folder_ + "\\" + command.local.substr(command.local.rfind('\\') + 1);
    here().fetches.push_back({command.remote, path, files_.file_exists(path) && !files_.is_link(path)});
  }

  bool is_deleted(const std::string& remote) {
    return std::any_of(report_->lines.begin(), report_->lines.end(), [&](const jobs::ReportLine& line) {
      return line.word == ReportWord::kDeleted && line.account == here().account && line.remote == remote;
    });
  }

  const platform::Files& files_;
  const std::string& folder_;
  const std::optional<jobs::JobReport> report_;
  JobFindings found_;
};

}  // namespace

const AccountFindings::Fetch* AccountFindings::arrived(std::string_view remote) const {
  const auto found = std::find_if(fetches.begin(), fetches.end(),
                                  [&](const Fetch& each) { return each.arrived && each.remote == remote; });
  return found == fetches.end() ? nullptr : &*found;
}

std::vector<std::string> AccountFindings::missing() const {
  std::vector<std::string> names;
  for (const Fetch& fetch : fetches) {
    if (!fetch.arrived) names.push_back(fetch.remote);
  }
  return names;
}

const AccountFindings* JobFindings::of(std::string_view account) const {
  const auto found = std::find_if(accounts.begin(), accounts.end(),
                                  [&](const AccountFindings& each) { return each.account == account; });
  return found == accounts.end() ? nullptr : &*found;
}

bool JobFindings::has_files() const {
  return std::any_of(accounts.begin(), accounts.end(), [](const AccountFindings& account) {
    return account.missing().size() < account.fetches.size();
  });
}

std::optional<JobFindings> findings_of(const platform::Files& files, const std::string& folder) {
  auto script = script_in(files, folder);
  if (!script) return std::nullopt;
  return Finder(files, folder, std::move(*script)).find();
}

}  // namespace qvrcom::results
