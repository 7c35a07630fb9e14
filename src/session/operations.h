#pragma once

#include <span>
#include <string_view>

#include "environment/operation_names.h"

namespace qvrcom::session {

class StatisticsOperations;

namespace operation = environment::operation;

// How a site is checked before its job is written.
enum class EntryKind {
  kPlain,         // not at all
  kVersionCheck,  // its firmware version has to be known
  kFullCheck,     // its firmware version has to be one that this software can work with
};

// The classes that carry per-site routines.
struct SiteOperations {
  StatisticsOperations& statistics;
};

// One operation of the session dialog: how each site is checked, and the routine that writes and runs one
// site's job.
struct Operation {
  std::string_view name;
  EntryKind entry;
  void (*per_site)(SiteOperations&);
};

std::span<const Operation> operations();

}  // namespace qvrcom::session
