// What every drawing file has that a database made by the host lacks: the tables of line
// types, text and dimension styles, views and viewports, the layouts, and the handles of the
// markers that end polylines and blocks.
#pragma once

#include <arx/dbdatabase.h>

#include <map>
#include <string>

#include "file_data.h"

namespace dxf {

// Adds what is missing, with new handles; a database read from a full file gains nothing.
void addStandardParts(AcDbDatabase& db, FileData& data);

// The kept TABLE objects (tables the host does not model), by name.
std::map<std::string, AcDbObjectId> keptTables(AcDbDatabase& db);

} // namespace dxf
