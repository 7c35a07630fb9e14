#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "scheduler/run_plan.h"

namespace qvrcom::scheduler {

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
