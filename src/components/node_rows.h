#pragma once

#include <vector>

#include "components/partition_rows.h"
#include "devicefiles/configuration_image.h"

namespace qvrcom::components {

// Brings the partition's nodes in line with `nodes`: others go with their details and styles, new ones come,
// and a node that stays takes its description and keeps its other columns. Inside the caller's transaction.
void store_nodes(platform::Database& database, const PartitionKey& key,
                 const std::vector<devicefiles::PartitionNode>& nodes);

}  // namespace qvrcom::components
