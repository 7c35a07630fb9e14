#include "environment/database_connection.h"

#include "environment/schema.h"

namespace qvrcom::environment {

platform::Database& DatabaseConnection::database() {
  if (!database_) {
    auto opened = engine_.open(folders_.GetConnectionString());
    require_schema(*opened);
    database_ = std::move(opened);
  }
  return *database_;
}

}  // namespace qvrcom::environment
