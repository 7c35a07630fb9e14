#pragma once

#include <string>
#include <vector>

#include "sitebook/site_book.h"

namespace qvrcom::desktop {

// The site book as a page has seen it last.
class SeenSites {
 public:
  explicit SeenSites(sitebook::SiteBook& book) : book_(book) {}

  // Reads the book. Whether it, or what is wrong with it, is not as it was the last time.
  bool look();

  // While the book cannot be read, those of the last time that it could.
  const std::vector<sitebook::SiteRecord>& sites() const { return sites_; }
  // Why the book cannot be read, as a sentence; "" when it can.
  const std::string& trouble() const { return trouble_; }

 private:
  sitebook::SiteBook& book_;
  std::vector<sitebook::SiteRecord> sites_;
  std::string trouble_;
};

}  // namespace qvrcom::desktop
