#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

#include "base/rows.h"

namespace qvrcom::platform {

struct NamedValue {
  std::string name;  // without the colon
  base::Field value;
};

// One open connection.
class Database {
 public:
  virtual ~Database() = default;

  // Runs one SQL statement in which a value stands as ":name"; values are bound, never spliced. Fault when a
  // placeholder has no value or a value has no placeholder, and when the engine refuses the statement.
  virtual base::Rows run(const std::string& sql, std::span<const NamedValue> values = {}) = 0;

  // Runs `work` inside one transaction: all of it is kept, or, when it throws, none.
  virtual void transaction(const std::function<void()>& work) = 0;
};

class DatabaseEngine {
 public:
  virtual ~DatabaseEngine() = default;

  // Opens the file that "Data Source=" of the connection text names (a suite path; the rest is not read).
  // Never creates it: a missing, foreign, locked or damaged file is a Fault that says which of these it is.
  virtual std::unique_ptr<Database> open(const std::string& connection_text) = 0;

  // Creates an empty database where no file is, and opens it.
  virtual std::unique_ptr<Database> create(const std::string& connection_text) = 0;
};

}  // namespace qvrcom::platform
