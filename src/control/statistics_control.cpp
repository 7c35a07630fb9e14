#include "control/statistics_control.h"

#include "base/fault.h"
#include "base/number.h"
#include "environment/files_and_folders.h"

namespace qvrcom::control {
namespace {

constexpr int kPartitions = 64;

// The hourglass for as long as it lives.
class Hourglass {
 public:
  explicit Hourglass(ControlView& view) : view_(view) { view_.set_hourglass(true); }
  ~Hourglass() { view_.set_hourglass(false); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  ControlView& view_;
};

}  // namespace

StatisticsControl::StatisticsControl(const StatisticsControlParts& parts)
    : parts_(parts), trap_(parts.request.rules.ui, platform::kControlTrap), request_(parts.request, *this) {}

void StatisticsControl::UserControl_Initialize() {
  trap_("ERROR!  UserControl_Initialize", [&] {
    environment::scheduler_folder(parts_.request.rules.session.run, parts_.request.rules.folders);
    Load_Sites();
    if (sites_.entries().empty()) sites_.add_no_site();
    state_.partitions_visible = !sites_.no_site_defined();
    parts_.view.show_sites(sites_.entries());
    enable_buttons();
    select_site(0);
  });
}

void StatisticsControl::Load_Sites() {
  trap_("ERROR!  Load_Sites", [&] {
    sites_.clear();
    const base::Rows rows = parts_.request.database.run("Get_AllSites", {});
    for (const base::Row row : rows)
      sites_.add(row);
  });
}

void StatisticsControl::Load_64_Partitions() {
  trap_("ERROR!  Load_Partitions", [&] {
    partitions_.clear();
    for (int number = 1; number <= kPartitions; ++number)
      partitions_.push_back({"Partition " + std::to_string(number), number});
    parts_.view.show_partitions(partitions_);
    state_.partition = 0;
    changed();
  });
}

void StatisticsControl::Load_Partitions() {
  trap_("ERROR!  Load_Partitions", [&] {
    partitions_.clear();
    const bool new_kind = parts_.request.rules.session.site.DeviceGeneration == "NEW";
    const base::Rows rows = parts_.request.database.run("Get_AllPartitions", {"1"});
    for (const base::Row row : rows) {
      const std::string identifier = row.text("PartitionID");
      const std::int32_t number = base::to_int32(identifier);
      if (new_kind && (number < 1 || number > kPartitions)) continue;
      const base::Field& name = row["Name"];
      partitions_.push_back({name ? identifier + " - " + *name : "Part" + identifier, number});
    }
    parts_.view.show_partitions(partitions_);
    state_.partition = -1;
    changed();
  });
}

void StatisticsControl::select_site(int index) {
  state_.site = index;
  changed();
  cmbSelectSite_Click();
}

// Every change of site starts the partition list anew, whichever entry it goes to.
void StatisticsControl::cmbSelectSite_Click() {
  trap_("ERROR! cmbSelectSite_Click", [&] {
    if (!sites_.no_site_defined()) Load_64_Partitions();
  });
}

void StatisticsControl::enable_buttons() {
  state_.buttons_enabled = state_.view_mode || state_.partitions_visible;
}

void StatisticsControl::optRetrieveStats_Click() {
  trap_("ERROR!  optRetrieveStats_Click", [&] { set_mode(false); });
}

void StatisticsControl::optViewStat_Click() {
  trap_("ERROR!  optViewStat_Click", [&] { set_mode(true); });
}

void StatisticsControl::set_mode(bool view_mode) {
  state_.view_mode = view_mode;
  enable_buttons();
  changed();
}

void StatisticsControl::cmdCommonDialog_Click() {
  trap_("ERROR!", [&] {
    const auto chosen = parts_.chooser.open_file(
        {.filter = "Statistics Files (*.csv)|*.csv", .flags = FileChoice::kFileMustExist});
    if (!chosen) return;
    state_.filename = *chosen;
    changed();
  });
}

void StatisticsControl::cmdOK_Click() {
  trap_("ERROR! cmdOK_Click", [&] {
    if (carry_out()) parts_.events.RemoveMe();
  });
}

void StatisticsControl::cmdApply_Click() {
  trap_("ERROR! cmdApply_Click", [&] { carry_out(); });
}

void StatisticsControl::cmdCancel_Click() {
  trap_("ERROR! cmdCancel_Click", [&] { parts_.events.RemoveMe(); });
}

bool StatisticsControl::carry_out() {
  return state_.view_mode ? view_file() : retrieve();
}

bool StatisticsControl::view_file() {
  if (state_.filename.empty()) return stay("Please Select a Filename", "View Statistics");
  {
    const Hourglass busy(parts_.view);
    parts_.viewer.hand_over(parts_.request.rules.files.from_native(state_.filename));
  }
  parts_.viewer.show_modal();
  return true;
}

bool StatisticsControl::retrieve() {
  if (!state_.partitions_visible) return stay("No Site is available", "Retrieve And View Statistics");
  if (state_.site <= 0) return stay("Please select a site", "Information");
  const auto selected = static_cast<std::size_t>(state_.site);
  // The hidden lists are one row behind the site list: this is the card type of the site that is listed
  // after the selected one, and of none after the last.
  const std::string card_type = sites_.card_type(selected);
  const requests::StatisticsOrder order{.site = sites_.row(selected - 1), .partition = selected_partition()};
  return request_.run(card_type, order) != requests::RequestResult::kBusy;
}

std::int32_t StatisticsControl::selected_partition() const {
  const auto index = static_cast<std::size_t>(state_.partition);
  if (index >= partitions_.size()) {
    throw base::Fault(base::kSubscriptOutOfRange, "No partition is selected. Choose one of the list.");
  }
  return partitions_[index].item_data;
}

bool StatisticsControl::stay(const char* text, const char* title) {
  parts_.request.rules.ui.show({.text = text, .title = title, .icon = platform::Icon::kInformation});
  return false;
}

void StatisticsControl::ShowStatistics(const std::string& csvFile) {
  trap_("ERROR! ShowStatistics", [&] {
    parts_.viewer.hand_over(csvFile);
    parts_.view.set_hourglass(false);
    parts_.viewer.show_modal();
  });
}

}  // namespace qvrcom::control
