#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvrcom::base {

// One field of a row: a null, or its text. Numbers stand in their decimal form.
using Field = std::optional<std::string>;

class Row;

// A snapshot of a query's answer: it stays what it is when the table changes or the connection ends.
class Rows {
 public:
  Rows() = default;
  explicit Rows(std::vector<std::string> columns);

  // `fields` has one entry per column.
  void add(std::vector<Field> fields);

  std::size_t size() const { return fields_.size(); }
  bool empty() const { return fields_.empty(); }
  const std::vector<std::string>& columns() const { return columns_; }
  Row operator[](std::size_t index) const;

  class Iterator;
  Iterator begin() const;
  Iterator end() const;

 private:
  friend class Row;
  std::vector<std::string> columns_;
  std::vector<std::vector<Field>> fields_;
};

// A row of a `Rows` that outlives it.
class Row {
 public:
  // The named field, letter case ignored. Fault when the answer has no such column.
  const Field& operator[](std::string_view column) const;

  // The named field's text, `substitute` when it is null.
  std::string text(std::string_view column, std::string_view substitute = {}) const;

  // The named field's text, `substitute` when it is null or empty.
  std::string text_or(std::string_view column, std::string_view substitute) const;

 private:
  friend class Rows;
  Row(const Rows& rows, std::size_t index) : rows_(&rows), index_(index) {}
  const Rows* rows_;
  std::size_t index_;
};

class Rows::Iterator {
 public:
  Iterator(const Rows& rows, std::size_t index) : rows_(&rows), index_(index) {}
  Row operator*() const { return (*rows_)[index_]; }
  Iterator& operator++() {
    ++index_;
    return *this;
  }
  bool operator==(const Iterator& other) const = default;

 private:
  const Rows* rows_;
  std::size_t index_;
};

}  // namespace qvrcom::base
