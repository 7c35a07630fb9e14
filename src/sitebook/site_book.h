#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "environment/database_connection.h"
#include "sitebook/site_record.h"

namespace qvrcom::sitebook {

// The site table for people. Every change is one transaction.
class SiteBook {
 public:
  explicit SiteBook(environment::DatabaseConnection& connection) : connection_(connection) {}

  // In the table's order.
  std::vector<SiteRecord> list();

  // By SiteID, by the user's identifier or by "name - identifier". Nothing when no site has this key; Fault
  // when it fits more than one.
  std::optional<SiteRecord> find(std::string_view key);

  // problems_of(site), and a user identifier that another site has. An empty identifier is never doubled.
  std::vector<SiteProblem> problems(const SiteRecord& site);

  // Returns the new key. The site gets its statistics settings row. Fault "Site refused" with the reasons.
  std::int32_t add(const SiteRecord& site);

  // All or none.
  void add_all(const std::vector<SiteRecord>& sites);

  // Fault "Site refused" with the reasons, "Site not found" when the key is gone.
  void edit(const SiteRecord& site);

  // Stores what the device says of itself, whatever else the row holds. Answers with the version before. Fault
  // "Site not found".
  base::Field store_firmware(std::int32_t site_id, const std::string& version);

  // With its file settings. Fault "Site not found".
  void remove(std::int32_t site_id);

 private:
  environment::DatabaseConnection& connection_;
};

}  // namespace qvrcom::sitebook
