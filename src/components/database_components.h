#pragma once

#include "components/component_registry.h"
#include "environment/command_set.h"

namespace qvrcom::components {

// Registers the lookup components that answer from the suite's database, which stays the caller's:
//   QVRdb.SITE       Get_Site_Rows(deviceId)
//   QVRdb.Use        Get_Current_User_Rows()
//   QVRdb.Config     Get_Current_Config_Rows(), Get_Partition_Rows(configuration, partition)
//   QVRdb.Nodes      Get_MSG_Nodes(configuration, partition)
//   QVRud.udconfig   Update_SiteID(siteId), answers "OK"
// The others answer with rows in their schema-and-rows XML form (docs/formats/rows-xml.md).
void add_database_components(ComponentRegistry& registry, environment::DatabaseConnection& connection);

}  // namespace qvrcom::components
