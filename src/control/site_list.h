#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/rows.h"
#include "control/list_entry.h"
#include "sitebook/site_record.h"

namespace qvrcom::control {

// The site list beside its hidden lists, which hold what a session takes over of each site. Entry 0 is a
// placeholder without a hidden row, so hidden row i belongs to entry i + 1. The list of direct addresses
// stays empty.
class SiteList {
 public:
  static constexpr const char* kPlaceholder = "<Please select a site>";
  static constexpr const char* kNoSite = "< No Site is defined >";

  void clear();

  // One row of the site table. The first one brings the placeholder.
  void add(const base::Row& row);
  void add_no_site() { entries_.push_back({kNoSite}); }

  const ListEntries& entries() const { return entries_; }
  bool no_site_defined() const { return !entries_.empty() && entries_[0].text == kNoSite; }

  // With the defaults. Fault "Subscript out of range" when there is no such row.
  const sitebook::SiteRecord& row(std::size_t index) const;

  // "" when there is no such row.
  std::string card_type(std::size_t index) const;

 private:
  ListEntries entries_;                     // cmbSelectSite
  std::vector<sitebook::SiteRecord> rows_;  // the hidden lists, side by side
};

}  // namespace qvrcom::control
