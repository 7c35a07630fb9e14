#pragma once

#include <string>

#include "components/partition_rows.h"

namespace qvrcom::components {

// The statistics that were last decoded for the partition from the site that the session works on, as a CSV:
// two-column rows about the report, the first two naming the site, then a table for each kind of counter, a
// blank line between tables. Tables without a row are left out. Fault when the session has no site or the
// database no statistics of it for the partition.
std::string statistics_csv(platform::Database& database, const PartitionKey& key);

}  // namespace qvrcom::components
