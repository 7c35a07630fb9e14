#include "sitebook/site_book.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>

#include "base/fault.h"
#include "base/number.h"

namespace qvrcom::sitebook {
namespace {

SiteRecord record_of(const base::Row& row) {
  SiteRecord site;
  site.site_id = base::to_int32(row.text("SiteID"));
  for (const SiteColumn& column : kSiteColumns)
    site.*column.member = row[column.column];
  return site;
}

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

std::string assignments() {
  std::string text;
  for (const SiteColumn& column : kSiteColumns) {
    const std::string name(column.column);
    if (!text.empty()) text += ", ";
    text.append(name).append(" = :").append(name);
  }
  return text;
}

void need_site(platform::Database& database, std::int32_t site_id) {
  const platform::NamedValue key = key_of(site_id);
  if (database.run("SELECT SiteID FROM Site WHERE SiteID = :SiteID", {&key, 1}).empty())
    throw base::Fault("Site not found",
                      "The site book has no site with the key " + std::to_string(site_id) + ".");
}

const std::string& identifier_of(const SiteRecord& site) {
  static const std::string none;
  return site.identifier ? *site.identifier : none;
}

[[noreturn]] void refuse(const SiteRecord& site, const std::vector<SiteProblem>& problems) {
  throw base::Fault("Site refused", "\"" + title_of(site) + "\": " + reasons_of(problems));
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
    problems.push_back({"id", "Site identifier \"" + owner->first + "\" belongs to another site."});
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

}  // namespace

std::vector<SiteRecord> SiteBook::list() {
  std::vector<SiteRecord> sites;
  const base::Rows rows =
      connection_.database().run("SELECT SiteID, " + column_texts("") + " FROM Site ORDER BY SiteID");
  for (const base::Row row : rows)
    sites.push_back(record_of(row));
  return sites;
}

std::optional<SiteRecord> SiteBook::find(std::string_view key) {
  std::vector<SiteRecord> found = list();
  std::erase_if(found, [&](const SiteRecord& site) {
    return std::to_string(site.site_id) != key && (identifier_of(site) != key || key.empty()) &&
           title_of(site) != key;
  });
  if (found.empty()) return std::nullopt;
  if (found.size() > 1) {
    throw base::Fault("Site is ambiguous", "\"" + std::string(key) + "\" fits \"" + title_of(found[0]) +
                                               "\" (key " + std::to_string(found[0].site_id) + ") and \"" +
                                               title_of(found[1]) + "\" (key " +
                                               std::to_string(found[1].site_id) + ").");
  }
  return std::move(found.front());
}

std::vector<SiteProblem> SiteBook::problems(const SiteRecord& site) {
  return problems_among(site, identifiers_of(list()));
}

std::int32_t SiteBook::add(const SiteRecord& site) {
  std::int32_t key = 0;
  connection_.database().transaction([&] {
    SiteRecord fresh = site;
    fresh.site_id = 0;
    if (const auto found = problems(fresh); !found.empty()) refuse(fresh, found);
    key = insert(connection_.database(), fresh);
  });
  return key;
}

void SiteBook::add_all(const std::vector<SiteRecord>& sites) {
  connection_.database().transaction([&] {
    auto owners = identifiers_of(list());
    for (SiteRecord site : sites) {
      site.site_id = 0;
      if (const auto found = problems_among(site, owners); !found.empty()) refuse(site, found);
      const std::int32_t key = insert(connection_.database(), site);
      if (!identifier_of(site).empty()) owners.emplace(identifier_of(site), key);
    }
  });
}

void SiteBook::edit(const SiteRecord& site) {
  connection_.database().transaction([&] {
    need_site(connection_.database(), site.site_id);
    if (const auto found = problems(site); !found.empty()) refuse(site, found);
    std::vector<platform::NamedValue> values = values_of(site);
    values.push_back(key_of(site.site_id));
    connection_.database().run("UPDATE Site SET " + assignments() + " WHERE SiteID = :SiteID", values);
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

void SiteBook::remove(std::int32_t site_id) {
  connection_.database().transaction([&] {
    need_site(connection_.database(), site_id);
    const platform::NamedValue key = key_of(site_id);
    connection_.database().run("DELETE FROM File_Handling WHERE SiteID = :SiteID", {&key, 1});
    connection_.database().run("DELETE FROM Site WHERE SiteID = :SiteID", {&key, 1});
  });
}

}  // namespace qvrcom::sitebook
