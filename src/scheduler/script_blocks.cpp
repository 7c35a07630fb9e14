#include "scheduler/script_blocks.h"

#include <algorithm>

#include "protocol/operation_names.h"

namespace qvrcom::scheduler {

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
