#include "sitebook/sample_site.h"

#include <algorithm>

namespace qvrcom::sitebook {
namespace {

SiteRecord sample(const std::string& address, const std::string& access_code) {
  SiteRecord site;
  site.name = "USA_Office";
  site.identifier = "101";
  site.card_type = "NEW";
  site.method = "0";
  site.lan = address;
  site.access_code = access_code;
  site.firmware = "6.61";
  return site;
}

}  // namespace

std::string add_sample_site(SiteBook& book, const std::string& address, const std::string& access_code) {
  const SiteRecord wanted = sample(address, access_code);
  const auto sites = book.list();
  const auto found = std::find_if(sites.begin(), sites.end(), [&](const SiteRecord& site) {
    return site.identifier == wanted.identifier;
  });
  if (found == sites.end()) {
    book.add(wanted);
    return "Site book: added " + title_of(wanted) + " at " + address;
  }
  SiteRecord site = *found;
  site.lan = wanted.lan;
  site.access_code = wanted.access_code;
  if (site == *found) return {};
  book.edit(*found, site);
  return "Site book: " + title_of(site) + " is now at " + address;
}

}  // namespace qvrcom::sitebook
