#pragma once

#include "csv/byte_source.h"

namespace qvrcom::adapters {

// Files by suite path. A file that is replaced or removed while it is open stays readable.
class ByteSourcesPosix : public csv::ByteSources {
 public:
  csv::FileStamp stamp(const std::string& path) const override;
  std::unique_ptr<csv::ByteSource> open(const std::string& path) const override;
};

}  // namespace qvrcom::adapters
