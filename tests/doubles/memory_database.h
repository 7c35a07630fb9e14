#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/fault.h"
#include "environment/schema.h"
#include "platform/database.h"

namespace qvrcom::doubles {

// A database that answers with rows prepared per SQL text: the first prepared piece that the text contains
// decides. It is of the current schema until told otherwise, and remembers what it was asked.
class MemoryDatabase : public platform::DatabaseEngine {
 public:
  struct Statement {
    std::string sql;
    std::vector<platform::NamedValue> values;
  };

  std::unique_ptr<platform::Database> open(const std::string&) override {
    ++opened;
    if (!refusal.empty()) throw base::Fault(refusal, "NewDB.mdb");
    return std::make_unique<Connection>(*this);
  }
  std::unique_ptr<platform::Database> create(const std::string& text) override { return open(text); }

  // Answers one text after the other under the given columns: row by row, null fields as nullopt.
  void answer(const std::string& piece, const std::vector<std::string>& columns,
              const std::vector<std::vector<base::Field>>& rows) {
    base::Rows table(columns);
    for (const auto& row : rows)
      table.add(row);
    answers.emplace_back(piece, std::move(table));
  }

  std::vector<std::pair<std::string, base::Rows>> answers;
  std::vector<Statement> statements;  // without the look at the schema
  std::string refusal;                // when set, opening fails with it
  std::string application = "1364611651";
  std::string version = std::to_string(environment::kSchemaVersion);
  int opened = 0;

 private:
  class Connection : public platform::Database {
   public:
    explicit Connection(MemoryDatabase& owner) : owner_(owner) {}
    base::Rows run(const std::string& sql, std::span<const platform::NamedValue> values) override {
      return owner_.run(sql, values);
    }
    void transaction(const std::function<void()>& work) override { work(); }

   private:
    MemoryDatabase& owner_;
  };

  base::Rows run(const std::string& sql, std::span<const platform::NamedValue> values) {
    if (sql == "PRAGMA application_id") return one("application_id", application);
    if (sql == "PRAGMA user_version") return one("user_version", version);
    statements.push_back({sql, {values.begin(), values.end()}});
    for (const auto& [piece, rows] : answers) {
      if (sql.find(piece) == std::string::npos) continue;
      return sql.ends_with("WHERE SiteID = :SiteID") ? of_site(rows, values[0].value) : rows;
    }
    return {};
  }

  static base::Rows of_site(const base::Rows& rows, const base::Field& key) {
    const auto& columns = rows.columns();
    if (std::find(columns.begin(), columns.end(), "SiteID") == columns.end()) return rows;
    base::Rows found(columns);
    for (const base::Row row : rows) {
      if (row["SiteID"] != key) continue;
      std::vector<base::Field> fields;
      for (const std::string& column : columns)
        fields.push_back(row[column]);
      found.add(fields);
    }
    return found;
  }

  static base::Rows one(const char* column, const std::string& text) {
    base::Rows rows({column});
    rows.add({text});
    return rows;
  }
};

}  // namespace qvrcom::doubles
