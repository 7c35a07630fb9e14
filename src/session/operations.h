#pragma once

#include <span>
#include <string_view>

#include "protocol/operation_names.h"

namespace qvrcom::session {

class DeviceView;
class SameLogOperations;
class StatisticsOperations;

namespace operation = protocol::operation;

// How the dialog starts an operation, and how a site is checked before its job is written.
enum class EntryKind {
  kPlain,         // not at all
  kVersionCheck,  // its firmware version has to be known
  kFullCheck,     // its firmware version has to be one that this software can work with
  kView,          // not at all, and jobs without numbers: View_QVR
  kCommand,       // no sites: the job was written and submitted by the caller, ProcessSystemCommand waits
};

// The classes that carry per-site routines.
struct SiteOperations {
  StatisticsOperations& statistics;
  SameLogOperations& same_log;
  DeviceView& view;
};

// One operation of the session dialog: how each site is checked, and the routine that writes and runs one
// site's job.
struct Operation {
  std::string_view name;
  EntryKind entry;
  void (*per_site)(SiteOperations&) = [](SiteOperations&) {};
  void (*outcome)(SiteOperations&) = nullptr;  // of a job that ended while no dialog waited, where its files
                                               // still serve the one who ordered them
};

std::span<const Operation> operations();

}  // namespace qvrcom::session
