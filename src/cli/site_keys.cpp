#include "cli/site_keys.h"

#include <algorithm>

#include "base/fault.h"

namespace qvrcom::cli {

std::vector<sitebook::SiteRecord> find_sites(sitebook::SiteBook& book, const std::vector<std::string>& keys) {
  std::vector<sitebook::SiteRecord> sites;
  for (const std::string& key : keys) {
    const std::optional<sitebook::SiteRecord> site = book.find(key);
    if (!site)
      throw base::Fault("Site not found",
                        "No site has the key \"" + key + "\". \"qvrcomctl sites list\" shows all of them.");
    const auto same = [&](const sitebook::SiteRecord& other) { return other.site_id == site->site_id; };
    if (std::none_of(sites.begin(), sites.end(), same)) sites.push_back(*site);
  }
  return sites;
}

}  // namespace qvrcom::cli
