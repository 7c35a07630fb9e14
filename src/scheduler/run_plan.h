#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/device_connection.h"
#include "platform/files.h"
#include "protocol/script_grammar.h"

namespace qvrcom::scheduler {

// A conversation with a device, checked: nothing in it reaches outside the job's folder.
struct RunPlan {
  struct Dial {
    std::string connection;
    std::string number;
  };
  struct Step {
    protocol::CommandKind kind = protocol::CommandKind::kAccount;
    std::string remote;  // the account for kAccount
    std::string local;   // suite path, made of the job's folder and a plain name
    std::uint64_t hint = 0;
  };

  std::string job_name;
  std::string folder;       // the job's, without a backslash at its end
  std::string description;  // of the script's header
  protocol::ScriptKind kind = protocol::ScriptKind::kTransfer;
  std::optional<Dial> dial;
  platform::DeviceLogin login;
  std::uint16_t telnet_port = 23;
  std::vector<Step> steps;
};

// Reads the script of a job ("NAME\NAME.scr" in the scheduler folder, which ends in a backslash) and checks
// it. `script_path` is where the index says the script lies: it must be that place. Fault with the reason, a
// full sentence as its description, when there is no script, it is damaged, names a file outside the job's
// folder, or a link stands on the way.
RunPlan make_plan(const platform::Files& files, const std::string& scheduler_folder,
                  const std::string& job_name, const std::string& script_path);

// The lines of one partition: from its account line to the next.
struct ScriptBlock {
  std::string account;  // "" for the lines that stand before the first account line
  std::size_t first = 0;
  std::size_t end = 0;  // behind its last step
};

// All steps in their order; a script without a step has no block.
std::vector<ScriptBlock> blocks_of(const std::vector<RunPlan::Step>& steps);

// Whether a job of this description goes on with the next partition when one has failed: those that take a
// device as a whole, where a partition may be missing. The description counts as it stands.
bool forgives_blocks(std::string_view description, const std::vector<ScriptBlock>& blocks);

}  // namespace qvrcom::scheduler
