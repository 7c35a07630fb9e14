#include "scheduler/run_plan.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/fault.h"
#include "base/text.h"
#include "protocol/device_address.h"
#include "protocol/job_name.h"
#include "protocol/job_report.h"
#include "protocol/operation_names.h"

namespace qvrcom::scheduler {
namespace {

using base::Fault;
using protocol::CommandKind;

constexpr std::string_view kPartExtension = ".part";  // of a file that is being fetched

// A name that means the same file on every system, in the folder it is joined to.
bool is_plain_name(std::string_view name) {
  return !name.empty() && name.size() <= 200 && name != "." && name != ".." &&
         name.find_first_of("\\/:*?\"<>|") == std::string_view::npos && !base::has_control_character(name);
}

class Planner {
 public:
  Planner(const platform::Files& files, const std::string& scheduler_folder, const std::string& job_name)
      : files_(files), folder_(scheduler_folder + job_name), script_(protocol::script_path(folder_)) {}

  protocol::Script read(const std::string& script_path) const {
    if (!base::equals_ignoring_case(script_path, script_))
      throw Fault("The script lies outside the scheduler folder: " + files_.native(script_path) + ".");
    need_no_link(folder_, "The job's folder");
    need_no_link(script_, "The script");
    if (!files_.file_exists(script_)) throw Fault("The script " + files_.native(script_) + " is missing.");
    if (files_.length(script_) > protocol::kScriptLimit) throw Fault("The script is too long.");
    protocol::ScriptReading reading = protocol::read_script(files_.read(script_));
    if (!reading.script) throw Fault(problem_sentence(reading.problem));
    return std::move(*reading.script);
  }

  RunPlan::Step step(const protocol::ScriptCommand& command) const {
    RunPlan::Step step{command.kind, command.remote, {}, command.size.value_or(0)};
    if (command.kind == CommandKind::kAccount) step.remote = command.account;
    need_clean(step.remote, "Line " + std::to_string(command.line) + " of the script");
    if (command.kind == CommandKind::kGet || command.kind == CommandKind::kPut)
      step.local = local(command.local, command.line);
    if (command.kind == CommandKind::kGet) need_no_part(step.local, command.line);
    return step;
  }

  // A file that one fetch has brought is not overwritten by another.
  static void need_files_of_their_own(const std::vector<RunPlan::Step>& steps) {
    std::map<std::string, std::pair<std::string, std::string>>
        sources;  // by local file: account, device file
    std::string account;
    for (const RunPlan::Step& step : steps) {
      if (step.kind == CommandKind::kAccount) account = step.remote;
      if (step.kind != CommandKind::kGet) continue;
      const std::pair source(account, step.remote);
      if (sources.try_emplace(base::to_lower(step.local), source).first->second != source)
        throw Fault("The script fetches two device files into " +
                    step.local.substr(step.local.rfind('\\') + 1) + ".");
    }
  }

  static void need_clean(const std::string& text, const std::string& what) {
    if (base::has_control_character(text))
      throw Fault(what + " holds a control character, which a device would take for another command.");
  }

 private:
  static std::string problem_sentence(const protocol::ScriptProblem& problem) {
    if (problem.line == 0) return "The script is damaged: " + problem.reason;
    return "The script is damaged at line " + std::to_string(problem.line) + " (" + problem.text +
           "): " + problem.reason;
  }

  void need_no_link(const std::string& path, const std::string& what) const {
    if (files_.is_link(path))
      throw Fault(what + " " + files_.native(path) + " is a link, which is not followed.");
  }

  std::string local(const std::string& path, std::size_t line) const {
    const std::string where = "Line " + std::to_string(line) + " of the script";
    const std::size_t cut = folder_.size() + 1;
    const bool inside = path.size() > cut &&
                        base::equals_ignoring_case(path.substr(0, cut), folder_ + "\\") &&
                        is_plain_name(std::string_view(path).substr(cut));
    if (!inside)
      throw Fault(where + " names a file that is not directly in the job's folder: " + files_.native(path) +
                  ".");
    std::string own = folder_ + "\\" + path.substr(cut);
    if (base::equals_ignoring_case(own, script_) ||
        base::equals_ignoring_case(own, protocol::report_path(folder_)))
      throw Fault(where + " names the job's own script or report as its file.");
    need_no_link(own, where + " names a file that leads elsewhere:");
    return own;
  }

  static void need_no_part(const std::string& path, std::size_t line) {
    if (path.size() < kPartExtension.size() ||
        !base::equals_ignoring_case(path.substr(path.size() - kPartExtension.size()), kPartExtension))
      return;
    throw Fault(
        "Line " + std::to_string(line) +
        " of the script fetches into a name that ends in .part, which is of files that are not whole.");
  }

  const platform::Files& files_;
  std::string folder_;
  std::string script_;
};

}  // namespace

RunPlan make_plan(const platform::Files& files, const std::string& scheduler_folder,
                  const std::string& job_name, const std::string& script_path) {
  const Planner planner(files, scheduler_folder, job_name);
  const protocol::Script script = planner.read(script_path);

  RunPlan plan;
  const protocol::ScriptHeader& header = script.header;
  plan.job_name = job_name;
  plan.folder = scheduler_folder + job_name;
  plan.description = header.description;
  plan.kind = script.kind;
  if (header.dial_up_flag == 1) plan.dial = {header.dial_up_connection, header.number_to_dial};
  const protocol::DeviceAddress address = protocol::parse_device_address(header.ftp_address);
  plan.login = {address.host, address.ftp_port, header.ftp_user.empty() ? "admin" : header.ftp_user,
                header.ftp_password};
  plan.telnet_port = address.telnet_port;
  Planner::need_clean(plan.login.user, "The device user");
  Planner::need_clean(plan.login.password, "The password");
  for (const protocol::ScriptCommand& command : script.commands)
    plan.steps.push_back(planner.step(command));
  Planner::need_files_of_their_own(plan.steps);
  return plan;
}

namespace operation = protocol::operation;

std::vector<ScriptBlock> blocks_of(const std::vector<RunPlan::Step>& steps) {
  std::vector<ScriptBlock> blocks;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const bool account = steps[i].kind == protocol::CommandKind::kAccount;
    if (account || blocks.empty()) blocks.push_back({account ? steps[i].remote : std::string{}, i, i});
    blocks.back().end = i + 1;
  }
  return blocks;
}

bool forgives_blocks(std::string_view description, const std::vector<ScriptBlock>& blocks) {
  if (description == operation::kRetrieveResetAllStatistics ||
      description == operation::kRetrieveConfiguration)
    return true;
  const auto accounts =
      std::count_if(blocks.begin(), blocks.end(), [](const ScriptBlock& b) { return !b.account.empty(); });
  return description == operation::kRetrieveAllMessageIndexes && accounts > 1;
}

}  // namespace qvrcom::scheduler
