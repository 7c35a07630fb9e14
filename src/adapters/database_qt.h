#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/files.h"

namespace qvrcom::adapters {

// Databases in single files, through Qt SQL.
class QtDatabaseEngine : public platform::DatabaseEngine {
 public:
  explicit QtDatabaseEngine(const platform::Files& files) : files_(files) {}

  std::unique_ptr<platform::Database> open(const std::string& connection_text) override;
  std::unique_ptr<platform::Database> create(const std::string& connection_text) override;

 private:
  const platform::Files& files_;
};

}  // namespace qvrcom::adapters
