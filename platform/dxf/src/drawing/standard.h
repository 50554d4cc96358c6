// What every drawing file has that a database made by the host lacks: the tables of line
// types, text and dimension styles, views and viewports, the layouts, and the handles of the
// markers that end polylines and blocks.
#pragma once

#include <arx/dbdatabase.h>

#include <map>
#include <string>
#include <vector>

#include "file_data.h"

namespace dxf {

// Adds what is missing, with new handles: the tables not among the kept ones (by name), the
// layouts, the end markers of blocks and of the polylines given (by handle). A database read
// from a full file gains nothing. True when objects were added.
bool addStandardParts(AcDbDatabase& db, FileData& data,
                      const std::map<std::string, AcDbObjectId>& keptTables,
                      const std::vector<std::uint64_t>& unendedPolylines);

} // namespace dxf
