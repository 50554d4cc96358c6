// Drawings on disk: a host database as an ASCII DXF file of release 2010 (AC1024, UTF-8) and
// back. Everything the database holds is written, and what it does not model (tables,
// entities and objects of other programs) is kept as read and written back unchanged.
#pragma once

#include <arx/dbdatabase.h>
#include <dxf/tags.h>

#include <memory>
#include <ostream>
#include <string>

namespace dxf {

// A new database from DXF text. Throws DxfError naming the line of the first fault; nothing is
// repaired.
std::unique_ptr<AcDbDatabase> readDrawing(const std::string& text, const std::string& source);
// Writes the database. A database that was never in a file first gets what a file needs and
// it lacks (the standard tables, layouts), and every end marker of a polyline or block gets
// its handle: so saving twice gives the same text, but for the time of the save that the SAT
// header of each solid carries (SOURCE_DATE_EPOCH, when set, fixes it). An entity of a class with
// no form in a file, or a solid or region whose body the SAT writer refuses, throws
// std::runtime_error.
void writeDrawing(AcDbDatabase& db, std::ostream& out);

// The drawing of a file, or null with the reason in message.
std::unique_ptr<AcDbDatabase> openDrawing(const std::string& path, std::string& message);
// Writes a temporary file beside path and puts it in place only when complete: a failed save
// leaves the old file as it was, and says why in message.
bool saveDrawing(AcDbDatabase& db, const std::string& path, std::string& message);

} // namespace dxf
