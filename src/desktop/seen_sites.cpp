#include "desktop/seen_sites.h"

#include <utility>

#include "ui/attempt.h"

namespace qvrcom::desktop {

bool SeenSites::look() {
  std::vector<sitebook::SiteRecord> sites;
  const auto fault = base::fault_of([&] { sites = book_.list(); });
  const std::string before = std::exchange(
      trouble_, fault ? "The site book cannot be used. " + ui::sentence_of(*fault) : std::string());
  if (fault || sites == sites_) return trouble_ != before;
  sites_ = std::move(sites);
  return true;
}

}  // namespace qvrcom::desktop
