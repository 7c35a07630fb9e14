#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/rows.h"
#include "control/list_entry.h"
#include "sitebook/site_record.h"

namespace qvrcom::control {

// The control's hidden lists, in their order on the control.
enum class SiteColumn : std::size_t {
  kUserDefinedSiteName,
  kUserDefinedSiteID,
  kControlCardType,
  kConnectMethod,
  kIPLan,
  kIPModem,
  kIPDirect,  // never filled
  kAccessCode,
  kDialupConn,
  kNumberToDial,
  kCount
};

// One row of the hidden lists: a site as a session takes it over.
struct SiteRow {
  std::int32_t site_id = 0;  // item data of every entry
  std::array<std::string, static_cast<std::size_t>(SiteColumn::kCount)> columns;

  std::string& operator[](SiteColumn column) { return columns[static_cast<std::size_t>(column)]; }
  const std::string& operator[](SiteColumn column) const { return columns[static_cast<std::size_t>(column)]; }
  bool operator==(const SiteRow&) const = default;
};

// The row of a site of the book. A null column gives its default; of the empty ones only connection method,
// LAN and modem address do.
SiteRow site_row(const sitebook::SiteRecord& site);

// The site list beside its hidden lists. Entry 0 is a placeholder without a hidden row, so hidden row i
// belongs to entry i + 1.
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

  // Fault "Subscript out of range" when there is no such row.
  const SiteRow& row(std::size_t index) const;

  // "" when there is no such row.
  std::string text(SiteColumn column, std::size_t index) const;

 private:
  ListEntries entries_;        // cmbSelectSite
  std::vector<SiteRow> rows_;  // the hidden lists, side by side
};

}  // namespace qvrcom::control
