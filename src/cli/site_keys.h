#pragma once

#include <string>
#include <vector>

#include "sitebook/site_book.h"

namespace qvrcom::cli {

// The sites of these keys (SiteID, the user's identifier or "name - identifier"), in their order, each once.
// Fault when a key fits no site or more than one.
std::vector<sitebook::SiteRecord> find_sites(sitebook::SiteBook& book, const std::vector<std::string>& keys);

}  // namespace qvrcom::cli
