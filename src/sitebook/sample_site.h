#pragma once

#include <string>

#include "sitebook/site_book.h"

namespace qvrcom::sitebook {

// Puts the site "USA_Office - 101" into the book, reached by LAN at `address`. When its identifier is there
// already, only address and access code are brought up to date. Returns one line that says what was done,
// empty when nothing was.
std::string add_sample_site(SiteBook& book, const std::string& address, const std::string& access_code);

}  // namespace qvrcom::sitebook
