#include "base/rows.h"

#include <algorithm>

#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::base {

Rows::Rows(std::vector<std::string> columns) : columns_(std::move(columns)) {}

void Rows::add(std::vector<Field> fields) {
  if (fields.size() != columns_.size()) {
    throw Fault(kSubscriptOutOfRange, "A row of " + std::to_string(fields.size()) + " fields does not fit " +
                                          std::to_string(columns_.size()) + " columns.");
  }
  fields_.push_back(std::move(fields));
}

Row Rows::operator[](std::size_t index) const {
  return {*this, index};
}
Rows::Iterator Rows::begin() const {
  return {*this, 0};
}
Rows::Iterator Rows::end() const {
  return {*this, size()};
}

const Field& Row::operator[](std::string_view column) const {
  const auto& columns = rows_->columns_;
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const std::string& name) {
    return equals_ignoring_case(name, column);
  });
  if (found == columns.end()) {
    throw Fault("Item not found in this collection", "The answer has no column \"" + std::string(column) +
                                                         "\". The database may be of another version.");
  }
  return rows_->fields_[index_][static_cast<std::size_t>(found - columns.begin())];
}

std::string Row::text(std::string_view column, std::string_view substitute) const {
  const Field& field = (*this)[column];
  return field ? *field : std::string(substitute);
}

std::string Row::text_or(std::string_view column, std::string_view substitute) const {
  const Field& field = (*this)[column];
  return field && !field->empty() ? *field : std::string(substitute);
}

}  // namespace qvrcom::base
