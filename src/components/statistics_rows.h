#pragma once

#include "components/partition_rows.h"
#include "devicefiles/line_statistics.h"
#include "devicefiles/node_statistics.h"

namespace qvrcom::components {

// Puts decoded statistics in the place of those that the partition had, in one transaction, under the site
// that the session works on.
void store_line_statistics(platform::Database& database, const PartitionKey& key,
                           const devicefiles::LineStatistics& statistics);
void store_node_statistics(platform::Database& database, const PartitionKey& key,
                           const devicefiles::NodeStatistics& statistics);

// Takes out the rows that such statistics would replace.
void remove_line_statistics(platform::Database& database, const PartitionKey& key);
void remove_node_statistics(platform::Database& database, const PartitionKey& key);

// The site that the session works on; null when there is none.
base::Field session_site(platform::Database& database);

}  // namespace qvrcom::components
