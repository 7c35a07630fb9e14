#include "jobs/job_findings.h"
#include "jobs/report_file.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "protocol/job_name.h"

namespace qvrcom::jobs {
namespace {

std::optional<protocol::Script> script_in(const platform::Files& files, const std::string& folder) {
  const std::string path = protocol::job_file(folder, protocol::kScriptExtension);
  if (!files.file_exists(path) || files.length(path) > protocol::kScriptLimit) return std::nullopt;
  return protocol::read_script(files.read(path)).script;
}

// What the report says of each account.
struct Told {
  std::set<std::pair<std::string, std::string>> deleted;  // account and device file
  std::set<std::string> asked_to_delete;                  // accounts
  std::map<std::string, std::string> reasons;             // account to the last one
  std::map<std::string, std::string> taken;               // account to what has come of it
};

Told told_by(const protocol::JobReport& report) {
  Told told;
  for (const protocol::ReportLine& line : report.lines) {
    if (line.word == protocol::ReportWord::kDeleting) told.asked_to_delete.insert(line.account);
    if (line.word == protocol::ReportWord::kDeleted) told.deleted.emplace(line.account, line.remote);
    if (line.word == protocol::ReportWord::kTaken) told.taken[line.account] = line.text;
    if (line.word == protocol::ReportWord::kFailed) told.reasons[line.account] = line.text;
  }
  return told;
}

// Goes through a script beside what the report says.
class Finder {
 public:
  Finder(const platform::Files& files, const std::string& folder, protocol::Script script)
      : files_(files), folder_(folder) {
    found_.script = std::move(script);
    if (const auto report = report_of(files, folder)) told_ = told_by(*report);
  }

  JobFindings find() {
    for (const protocol::ScriptCommand& command : found_.script.commands) {
      if (command.kind == protocol::CommandKind::kAccount || found_.accounts.empty()) begin(command.account);
      if (command.kind == protocol::CommandKind::kGet) add_fetch(command);
      if (command.kind == protocol::CommandKind::kDelete) add_delete(command);
    }
    for (AccountFindings& account : found_.accounts) {
      const bool arrived = account.missing().size() < account.fetches.size();
      account.has_deleted = account.has_deleted && (told_ || arrived);
      found_.has_deleted |= account.has_deleted;
    }
    return std::move(found_);
  }

 private:
  AccountFindings& here() { return found_.accounts.back(); }

  void begin(const std::string& account) {
    found_.accounts.push_back({account, {}, {}, false, {}, {}});
    if (!told_) return;
    if (told_->reasons.contains(account)) here().reason = told_->reasons.at(account);
    if (told_->taken.contains(account)) here().taken = told_->taken.at(account);
  }

  // The place of a local file is the job's folder, whatever the script says before its name.
  void add_fetch(const protocol::ScriptCommand& command) {
    const std::string path = folder_ + "\\" + command.local.substr(command.local.rfind('\\') + 1);
    here().fetches.push_back({command.remote, path, files_.file_exists(path) && !files_.is_link(path)});
  }

  void add_delete(const protocol::ScriptCommand& command) {
    here().has_deleted = !told_ || told_->asked_to_delete.contains(here().account);
    if (told_ && !told_->deleted.contains({here().account, command.remote}))
      here().kept.push_back(command.remote);
  }

  const platform::Files& files_;
  const std::string& folder_;
  std::optional<Told> told_;  // nothing without a report
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

}  // namespace qvrcom::jobs
