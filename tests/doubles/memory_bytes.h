#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "base/fault.h"
#include "csv/byte_source.h"

namespace qvrcom::doubles {

// A file in memory whose medium fails from `fails_from` on, and which says that it is `missing` bytes longer
// than it is (as a file does that was cut short after it was opened).
class MemoryBytes : public csv::ByteSource {
 public:
  explicit MemoryBytes(std::string bytes, std::uint64_t missing = 0)
      : bytes_(std::move(bytes)), missing_(missing) {}

  std::uint64_t size() const override { return bytes_.size() + missing_; }
  std::size_t read(std::uint64_t offset, std::span<char> into) override {
    if (offset + into.size() > fails_from) throw base::Fault("Device error", "The disk cannot be read.");
    if (offset >= bytes_.size()) return 0;
    const std::size_t length = std::min<std::size_t>(into.size(), bytes_.size() - offset);
    bytes_.copy(into.data(), length, offset);
    return length;
  }

  std::uint64_t fails_from = ~0ULL;

 private:
  std::string bytes_;
  std::uint64_t missing_;
};

}  // namespace qvrcom::doubles
