#pragma once

#include "platform/database.h"

namespace qvrcom::environment {

// The version that the programs of this tree read and write. docs/formats/database.md describes it.
inline constexpr int kSchemaVersion = 2;

// 0 for an empty database. Fault when it holds another program's tables.
int schema_version(platform::Database& database);

// Brings a database up to kSchemaVersion, step by step, in one transaction. Returns the version it had.
// Fault when it is newer than this program.
int migrate(platform::Database& database);

// Fault when the database is not of kSchemaVersion; the detail says which way it differs and what to do.
void require_schema(platform::Database& database);

}  // namespace qvrcom::environment
