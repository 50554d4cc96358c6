// One object of the database as the tags of its record, and the parts every record shares.
#pragma once

#include <arx/dbmain.h>
#include <dxf/tags.h>

#include "file_data.h"

namespace dxf {

// The record's type, handle, reactors, extension dictionary and owner.
void appendHead(Tags& out, const std::string& type, const AcDbObject& object, AcDbObjectId owner,
                const FileData& data);
// The groups of the object's fields (for a kept object its groups), with the groups no field
// took put back after their subclass marker, then the extended data.
void appendBody(Tags& out, const AcDbObject& object, const FileData& data);
void appendXData(Tags& out, const AcDbObject& object);
// The record type of a host object.
std::string recordType(const AcDbObject& object);

} // namespace dxf
