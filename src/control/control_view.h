#pragma once

#include <optional>
#include <string>

#include "control/list_entry.h"

namespace qvrcom::control {

// What the control's window shows. The lists' contents come apart, they change seldom.
struct ControlState {
  bool view_mode = true;  // optViewStat selected, fraView visible; else optRetrieveStats, fraRetrStats
  bool partitions_visible = true;  // lblSelectPartition, cmbSelectPartition
  bool buttons_enabled = true;     // cmdOK, cmdApply
  int site = -1;                   // selected entry of cmbSelectSite, -1 none
  int partition = -1;              // selected entry of cmbSelectPartition
  std::string filename;            // txtFilename; a native path
  bool operator==(const ControlState&) const = default;
};

// The window of the statistics control. It holds no logic: it shows what it is given and calls the handlers
// of `StatisticsControl`. Showing a state never calls a handler back.
class ControlView {
 public:
  virtual ~ControlView() = default;
  virtual void show_sites(const ListEntries& entries) = 0;
  virtual void show_partitions(const ListEntries& entries) = 0;
  virtual void show_state(const ControlState& state) = 0;
  virtual void set_hourglass(bool busy) = 0;
};

// What the control tells its host.
class ControlEvents {
 public:
  virtual ~ControlEvents() = default;
  virtual void RemoveMe() = 0;
  virtual void ProcessDone(const std::string& Process) = 0;  // declared for hosts, never raised
};

struct FileChoice {
  std::string filter;  // "description|pattern"
  int flags = 0;
  static constexpr int kFileMustExist = 4096;
};

class FileChooser {
 public:
  virtual ~FileChooser() = default;
  // The full native path of the chosen file; nothing when the user cancelled.
  virtual std::optional<std::string> open_file(const FileChoice& choice) = 0;
};

}  // namespace qvrcom::control
