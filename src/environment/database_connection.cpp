#include "environment/database_connection.h"

#include "environment/schema.h"

namespace qvrcom::environment {

DatabaseConnection::Hold::Hold(DatabaseConnection& connection) : connection_(connection) {
  if (connection.holds_ == 0) {
    auto opened = connection.engine_.open(connection.folders_.GetConnectionString());
    require_schema(*opened);
    connection.open_ = std::move(opened);
  }
  ++connection.holds_;
}

DatabaseConnection::Hold::~Hold() {
  if (--connection_.holds_ == 0) connection_.open_.reset();
}

base::Rows DatabaseConnection::run(const std::string& sql, std::span<const platform::NamedValue> values) {
  const Hold hold(*this);
  return open_->run(sql, values);
}

void DatabaseConnection::transaction(const std::function<void()>& work) {
  const Hold hold(*this);
  open_->transaction(work);
}

}  // namespace qvrcom::environment
