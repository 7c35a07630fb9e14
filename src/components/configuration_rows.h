#pragma once

#include "components/partition_rows.h"
#include "devicefiles/configuration_image.h"

namespace qvrcom::components {

// Brings the configuration's rows in line with the image, in one transaction: settings, partitions, lines.
// What the settings of a partition alone hold is kept for the partitions that stay.
void store_system_image(platform::Database& database, const std::string& configuration,
                        const devicefiles::SystemImage& image);

// Likewise the settings and nodes of one partition. Nodes that the image lacks go with their details; a node
// that stays keeps what the image does not carry.
void store_partition_image(platform::Database& database, const PartitionKey& key,
                           const devicefiles::PartitionImage& image);

}  // namespace qvrcom::components
