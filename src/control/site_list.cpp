#include "control/site_list.h"

#include "base/fault.h"

namespace qvrcom::control {

void SiteList::clear() {
  entries_.clear();
  rows_.clear();
}

void SiteList::add(const base::Row& row) {
  const sitebook::SiteRecord site = sitebook::site_of(row);
  if (entries_.empty()) entries_.push_back({kPlaceholder});
  entries_.push_back({sitebook::list_text_of(site), site.site_id});
  rows_.push_back(sitebook::with_defaults(site));
}

const sitebook::SiteRecord& SiteList::row(std::size_t index) const {
  if (index >= rows_.size()) {
    throw base::Fault(base::kSubscriptOutOfRange,
                      "The site list has no site " + std::to_string(index + 1) + ". Choose one of the list.");
  }
  return rows_[index];
}

std::string SiteList::card_type(std::size_t index) const {
  return index < rows_.size() ? *rows_[index].card_type : std::string{};
}

}  // namespace qvrcom::control
