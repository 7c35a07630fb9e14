#pragma once

#include <cstdint>
#include <string>

#include "control/control_view.h"
#include "control/list_entry.h"
#include "control/site_list.h"
#include "control/statistics_viewer.h"
#include "platform/trap.h"
#include "requests/statistics_request.h"

namespace qvrcom::control {

struct StatisticsControlParts {
  requests::StatisticsRequestParts request;
  ControlView& view;
  ControlEvents& events;
  StatisticsViewer& viewer;
  FileChooser& chooser;
};

// ucStatisticsMain without its window. The view tells it what the user chose (select_site, select_partition,
// set_filename) and calls the handlers. Every handler is trapped.
class StatisticsControl : public requests::StatisticsDisplay {
 public:
  explicit StatisticsControl(const StatisticsControlParts& parts);

  // Once the view stands. Again when the site book has changed: the lists are filled anew.
  void UserControl_Initialize();

  // The user's choices. select_site is followed by cmbSelectSite_Click by itself.
  void select_site(int index);
  void select_partition(int index) { state_.partition = index; }
  void set_filename(const std::string& filename) { state_.filename = filename; }

  void optRetrieveStats_Click();
  void optViewStat_Click();
  void cmbSelectSite_Click();
  void cmdCommonDialog_Click();
  void cmdOK_Click();
  void cmdApply_Click();
  void cmdCancel_Click();
  void ShowStatistics(const std::string& csvFile) override;

  void Load_Sites();
  void Load_64_Partitions();
  void Load_Partitions();  // of configuration 1; 1 to 64 only when the device is of the new kind

  const ControlState& state() const { return state_; }
  const SiteList& sites() const { return sites_; }
  const ListEntries& partitions() const { return partitions_; }

 private:
  // Each answers whether the wish was carried out; otherwise the control stays for another try.
  bool carry_out();
  bool view_file();
  bool retrieve();
  bool stay(const char* text, const char* title);

  void set_mode(bool view_mode);
  void enable_buttons();
  std::int32_t selected_partition() const;
  void changed() { parts_.view.show_state(state_); }

  StatisticsControlParts parts_;
  platform::Trap trap_;
  requests::StatisticsRequest request_;
  ControlState state_;
  SiteList sites_;          // cmbSelectSite and the hidden lists
  ListEntries partitions_;  // cmbSelectPartition
};

}  // namespace qvrcom::control
