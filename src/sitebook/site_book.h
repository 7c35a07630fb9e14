#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "environment/command_set.h"
#include "sitebook/site_record.h"

namespace qvrcom::sitebook {

// The site table for people. Every change is one transaction.
class SiteBook {
 public:
  explicit SiteBook(environment::DatabaseConnection& connection) : connection_(connection) {}

  // In the table's order.
  std::vector<SiteRecord> list();

  // The site with this SiteID; nothing when there is none.
  std::optional<SiteRecord> stored(std::int32_t site_id);

  // The sites of these keys (SiteID, the user's identifier, title or list text), in their order, each once.
  // Fault when a key fits no site or more than one.
  std::vector<SiteRecord> find(const std::vector<std::string>& keys);

  // problems_of(site), and a user identifier that another site has. An empty identifier is never doubled.
  std::vector<SiteProblem> problems(const SiteRecord& site);

  // Returns the new key. The site gets its statistics settings row. Fault "Site refused" with the reasons.
  std::int32_t add(const SiteRecord& site);

  // Writes the columns in which `wanted` differs from `shown`, the same site as somebody has seen it; the
  // others stay as the book has them. Fault "Site refused" with the reasons, "Site not found" when the key is
  // gone, "Site changed" when it now belongs to a site of another name or identifier, or when one of these
  // columns is not as shown any more.
  void edit(const SiteRecord& shown, const SiteRecord& wanted);

  // Stores what the device says of itself, whatever else the row holds. Answers with the version before.
  // Fault "Site not found".
  base::Field store_firmware(std::int32_t site_id, const std::string& version);

  // `work` is handed the book as it stands and answers with the sites to write: those with a key are edited,
  // those without one added. All or none.
  using Work = std::function<std::vector<SiteRecord>(const std::vector<SiteRecord>&)>;
  void update(const Work& work);

  // With their file settings, all or none. Fault "Site not found", "Site changed" when one is not as shown
  // any more.
  void remove(std::span<const SiteRecord> shown);

 private:
  environment::DatabaseConnection& connection_;
};

}  // namespace qvrcom::sitebook
