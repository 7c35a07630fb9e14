#pragma once

#include "components/component_registry.h"
#include "environment/command_set.h"
#include "platform/files.h"

namespace qvrcom::components {

// Registers the image components of the nine generations 5_0, 5_1, 5_2, 6_0, 6_1, 6_3, 7_0, 7_1 and 7_2:
//   QVRBIN5_0.Sys    DecodeSystemImage(configuration, file)
//   QVRBIN5_0.Part   DecodePartitionImage(configuration, partition, session key, file),
//                    DecodeLineStats(configuration, partition, file),
//                    DecodeNodeStats(configuration, partition, file)
// and likewise for the others. They read a device file (docs/formats/dbase.md, linestat.md, nodestat.md) and
// put what it says in the place of the configuration's rows, in one transaction after the whole file has been
// read. Each answers "OK", or a message for the user that begins with the file's name; then no row has
// changed, but for the statistics that the file was to replace: those are gone, so that nobody takes them for
// new ones. Configuration and partition are decimal texts, the file is a suite path; the session key is not
// looked at.
void add_image_components(ComponentRegistry& registry, environment::DatabaseConnection& connection,
                          const platform::Files& files);

}  // namespace qvrcom::components
