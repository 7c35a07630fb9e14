#include "control/site_list.h"

#include <array>

#include "base/fault.h"
#include "base/number.h"

namespace qvrcom::control {
namespace {

using sitebook::SiteRecord;

// Where a hidden list comes from and what stands for a null. Three defaults also stand for an empty text.
struct HiddenList {
  SiteColumn column;
  base::Field SiteRecord::*source;
  const char* when_null;
  bool also_when_empty;
};

constexpr std::array<HiddenList, 9> kHiddenLists{{
    {SiteColumn::kUserDefinedSiteName, &SiteRecord::name, "", false},
    {SiteColumn::kUserDefinedSiteID, &SiteRecord::identifier, "", false},
    {SiteColumn::kControlCardType, &SiteRecord::card_type, "NEW", false},
    {SiteColumn::kConnectMethod, &SiteRecord::method, "0", true},
    {SiteColumn::kIPLan, &SiteRecord::lan, "255.255.255.255", true},
    {SiteColumn::kIPModem, &SiteRecord::modem, "192.168.101.2", true},
    {SiteColumn::kAccessCode, &SiteRecord::access_code, "", false},
    {SiteColumn::kDialupConn, &SiteRecord::dialup, "<No Connection Defined>", false},
    {SiteColumn::kNumberToDial, &SiteRecord::number, "", false},
}};

SiteRecord record_of(const base::Row& row) {
  SiteRecord site;
  site.site_id = base::to_int32(row.text("SiteID"));
  for (const sitebook::SiteColumn& column : sitebook::kSiteColumns)
    site.*column.member = row[column.column];
  return site;
}

}  // namespace

SiteRow site_row(const SiteRecord& site) {
  SiteRow row;
  row.site_id = site.site_id;
  for (const HiddenList& list : kHiddenLists) {
    const base::Field& value = site.*list.source;
    const bool missing = !value || (list.also_when_empty && value->empty());
    row[list.column] = missing ? list.when_null : *value;
  }
  return row;
}

void SiteList::clear() {
  entries_.clear();
  rows_.clear();
}

void SiteList::add(const base::Row& row) {
  const SiteRecord site = record_of(row);
  if (entries_.empty()) entries_.push_back({kPlaceholder});
  entries_.push_back({sitebook::title_of(site), site.site_id});
  rows_.push_back(site_row(site));
}

const SiteRow& SiteList::row(std::size_t index) const {
  if (index >= rows_.size()) {
    throw base::Fault(base::kSubscriptOutOfRange,
                      "The site list has no site " + std::to_string(index + 1) + ". Choose one of the list.");
  }
  return rows_[index];
}

std::string SiteList::text(SiteColumn column, std::size_t index) const {
  return index < rows_.size() ? rows_[index][column] : std::string{};
}

}  // namespace qvrcom::control
