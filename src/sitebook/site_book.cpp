#include "sitebook/site_book.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "base/fault.h"
#include "base/number.h"

namespace qvrcom::sitebook {
namespace {

// One value per column, named like it, and the key.
std::vector<platform::NamedValue> values_of(const SiteRecord& site) {
  std::vector<platform::NamedValue> values;
  values.reserve(kSiteColumns.size() + 1);
  for (const SiteColumn& column : kSiteColumns)
    values.push_back({std::string(column.column), site.*column.member});
  return values;
}

platform::NamedValue key_of(std::int32_t site_id) {
  return {"SiteID", std::to_string(site_id)};
}

// "first, second" or ":first, :second" over the columns.
std::string column_texts(const std::string& before_each) {
  std::string text;
  for (const SiteColumn& column : kSiteColumns)
    text += (text.empty() ? "" : ", ") + before_each + std::string(column.column);
  return text;
}

std::string select_sites() {
  return "SELECT SiteID, " + column_texts("") + " FROM Site ";
}

std::string assignments() {
  std::string text;
  for (const SiteColumn& column : kSiteColumns) {
    const std::string name(column.column);
    if (!text.empty()) text += ", ";
    text.append(name).append(" = :").append(name);
  }
  return text;
}

base::Fault not_found(std::int32_t site_id) {
  return base::Fault("Site not found",
                     "The site book has no site with the key " + std::to_string(site_id) + ".");
}

void need_site(platform::Database& database, std::int32_t site_id) {
  const platform::NamedValue key = key_of(site_id);
  if (database.run("SELECT SiteID FROM Site WHERE SiteID = :SiteID", {&key, 1}).empty())
    throw not_found(site_id);
}

// In a list of the book, which is in the order of the keys.
const SiteRecord& stored_site(const std::vector<SiteRecord>& sites, std::int32_t site_id) {
  const auto found =
      std::lower_bound(sites.begin(), sites.end(), site_id,
                       [](const SiteRecord& site, std::int32_t key) { return site.site_id < key; });
  if (found == sites.end() || found->site_id != site_id) throw not_found(site_id);
  return *found;
}

using Columns = std::vector<SiteColumn>;

Columns all_columns() {
  return {kSiteColumns.begin(), kSiteColumns.end()};
}

Columns changed_columns(const SiteRecord& before, const SiteRecord& after) {
  Columns columns = all_columns();
  std::erase_if(columns,
                [&](const SiteColumn& column) { return before.*column.member == after.*column.member; });
  return columns;
}

// Refuses a site that is not, in one of these columns, what somebody was shown.
void require_as_shown(const SiteRecord& shown, const SiteRecord& stored, const Columns& columns) {
  std::string labels;
  for (const SiteColumn& column : columns) {
    if (shown.*column.member != stored.*column.member)
      labels.append(labels.empty() ? "" : ", ").append(column.label);
  }
  if (!labels.empty())
    throw base::Fault("Site changed", "The site book has something else by now for the site \"" +
                                          title_of(shown) + "\": " + labels +
                                          ". Refresh the list, then try again.");
}

const std::string& identifier_of(const SiteRecord& site) {
  static const std::string none;
  return site.identifier ? *site.identifier : none;
}

void require_none(const std::vector<SiteProblem>& problems, const SiteRecord& site) {
  if (!problems.empty())
    throw base::Fault("Site refused", "\"" + title_of(site) + "\": " + reasons_of(problems));
}

SiteProblem owned_by_another(const std::string& identifier) {
  return {"id", "Site identifier \"" + identifier + "\" belongs to another site."};
}

// Which site has which identifier; empty identifiers are left out.
std::map<std::string, std::int32_t> identifiers_of(const std::vector<SiteRecord>& sites) {
  std::map<std::string, std::int32_t> owners;
  for (const SiteRecord& site : sites) {
    if (!identifier_of(site).empty()) owners.emplace(identifier_of(site), site.site_id);
  }
  return owners;
}

std::vector<SiteProblem> problems_among(const SiteRecord& site,
                                        const std::map<std::string, std::int32_t>& owners) {
  std::vector<SiteProblem> problems = problems_of(site);
  const auto owner = owners.find(identifier_of(site));
  if (owner != owners.end() && (owner->second != site.site_id || site.site_id == 0))
    problems.push_back(owned_by_another(owner->first));
  return problems;
}

std::int32_t insert(platform::Database& database, const SiteRecord& site) {
  database.run("INSERT INTO Site (" + column_texts("") + ") VALUES (" + column_texts(":") + ")",
               values_of(site));
  // Keys only grow, so the new one is the greatest.
  const auto key = base::to_int32(database.run("SELECT MAX(SiteID) AS SiteID FROM Site")[0].text("SiteID"));
  const platform::NamedValue value = key_of(key);
  database.run(
      "INSERT INTO File_Handling (SiteID, FileType, AutoIncrements) VALUES (:SiteID, 'Statistics', '')",
      {&value, 1});
  return key;
}

void change(platform::Database& database, const SiteRecord& site) {
  std::vector<platform::NamedValue> values = values_of(site);
  values.push_back(key_of(site.site_id));
  database.run("UPDATE Site SET " + assignments() + " WHERE SiteID = :SiteID", values);
}

// The keys that are asked for, and the places of the sites that each fits.
using PlacesByKey = std::map<std::string, std::vector<std::size_t>, std::less<>>;

void fill_places(const std::vector<SiteRecord>& sites, PlacesByKey& places) {
  for (std::size_t i = 0; i < sites.size(); ++i) {
    for (const std::string& key : {std::to_string(sites[i].site_id), identifier_of(sites[i]),
                                   title_of(sites[i]), list_text_of(sites[i])}) {
      const auto wanted = places.find(key);
      if (key.empty() || wanted == places.end()) continue;
      if (wanted->second.empty() || wanted->second.back() != i) wanted->second.push_back(i);
    }
  }
}

std::string named(const SiteRecord& site) {
  return "\"" + title_of(site) + "\" (key " + std::to_string(site.site_id) + ")";
}

std::size_t only_place(const std::string& key, const std::vector<std::size_t>& places,
                       const std::vector<SiteRecord>& sites) {
  if (places.empty()) {
    throw base::Fault("Site not found",
                      "No site has the key \"" + key + "\". \"qvrcomctl sites list\" shows all of them.");
  }
  if (places.size() > 1) {
    throw base::Fault("Site is ambiguous", "\"" + key + "\" fits " + named(sites[places[0]]) + " and " +
                                               named(sites[places[1]]) + ".");
  }
  return places[0];
}

}  // namespace

std::vector<SiteRecord> SiteBook::list() {
  std::vector<SiteRecord> sites;
  const base::Rows rows = connection_.database().run(select_sites() + "ORDER BY SiteID");
  for (const base::Row row : rows)
    sites.push_back(site_of(row));
  return sites;
}

std::optional<SiteRecord> SiteBook::stored(std::int32_t site_id) {
  const platform::NamedValue key = key_of(site_id);
  const base::Rows rows = connection_.database().run(select_sites() + "WHERE SiteID = :SiteID", {&key, 1});
  return rows.empty() ? std::nullopt : std::optional(site_of(rows[0]));
}

std::vector<SiteRecord> SiteBook::find(const std::vector<std::string>& keys) {
  const std::vector<SiteRecord> sites = list();
  PlacesByKey places;
  for (const std::string& key : keys)
    places.emplace(key, std::vector<std::size_t>{});
  fill_places(sites, places);
  std::vector<SiteRecord> found;
  std::set<std::size_t> taken;
  for (const std::string& key : keys) {
    const std::size_t place = only_place(key, places.find(key)->second, sites);
    if (taken.insert(place).second) found.push_back(sites[place]);
  }
  return found;
}

std::vector<SiteProblem> SiteBook::problems(const SiteRecord& site) {
  std::vector<SiteProblem> problems = problems_of(site);
  if (identifier_of(site).empty()) return problems;
  const platform::NamedValue values[] = {{"ID", site.identifier}, key_of(site.site_id)};
  const base::Rows others = connection_.database().run(
      "SELECT SiteID FROM Site WHERE User_Defined_Site_ID = :ID AND SiteID <> :SiteID", values);
  if (!others.empty()) problems.push_back(owned_by_another(*site.identifier));
  return problems;
}

std::int32_t SiteBook::add(const SiteRecord& site) {
  std::int32_t key = 0;
  connection_.database().transaction([&] {
    SiteRecord fresh = site;
    fresh.site_id = 0;
    require_none(problems(fresh), fresh);
    key = insert(connection_.database(), fresh);
  });
  return key;
}

void SiteBook::edit(const SiteRecord& shown, const SiteRecord& wanted) {
  connection_.database().transaction([&] {
    const auto found = stored(shown.site_id);
    if (!found) throw not_found(shown.site_id);
    SiteRecord site = *found;
    const Columns changes = changed_columns(shown, wanted);
    require_as_shown(shown, site, have_same_title(shown, site) ? changes : all_columns());
    for (const SiteColumn& column : changes)
      site.*column.member = wanted.*column.member;
    require_none(problems(site), site);
    change(connection_.database(), site);
  });
}

void SiteBook::update(const Work& work) {
  connection_.database().transaction([&] {
    const std::vector<SiteRecord> stored = list();
    auto owners = identifiers_of(stored);
    for (const SiteRecord& site : work(stored)) {
      require_none(problems_among(site, owners), site);
      std::int32_t key = site.site_id;
      if (key == 0) {
        key = insert(connection_.database(), site);
      } else {
        need_site(connection_.database(), key);
        change(connection_.database(), site);
      }
      if (!identifier_of(site).empty()) owners.emplace(identifier_of(site), key);
    }
  });
}

base::Field SiteBook::store_firmware(std::int32_t site_id, const std::string& version) {
  base::Field before;
  platform::Database& database = connection_.database();
  database.transaction([&] {
    need_site(database, site_id);
    const platform::NamedValue key = key_of(site_id);
    before = database.run("SELECT FirmwareVersion FROM Site WHERE SiteID = :SiteID",
                          {&key, 1})[0]["FirmwareVersion"];
    if (before == version) return;
    const std::array<platform::NamedValue, 2> values{key, {"FirmwareVersion", version}};
    database.run("UPDATE Site SET FirmwareVersion = :FirmwareVersion WHERE SiteID = :SiteID", values);
  });
  return before;
}

void SiteBook::remove(std::span<const SiteRecord> shown) {
  connection_.database().transaction([&] {
    const std::vector<SiteRecord> sites = list();
    for (const SiteRecord& site : shown) {
      require_as_shown(site, stored_site(sites, site.site_id), all_columns());
      const platform::NamedValue key = key_of(site.site_id);
      connection_.database().run("DELETE FROM File_Handling WHERE SiteID = :SiteID", {&key, 1});
      connection_.database().run("DELETE FROM Site WHERE SiteID = :SiteID", {&key, 1});
    }
  });
}

}  // namespace qvrcom::sitebook
