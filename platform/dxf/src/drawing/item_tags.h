// The groups of a record as the field tables see them (items: points whole, angles in radians,
// references as object ids) and as the file holds them (tags).
#pragma once

#include <arx/dbdatabase.h>
#include <arx/dxfkind.h>
#include <dxf/tags.h>

#include <set>
#include <string>
#include <vector>

namespace dxf {

// Codes whose value starts a point: the next two groups (code + 10, code + 20) are its y and z.
bool isPointCode(int code);

// Tags from first to last (exclusive) as items. References (codes 330 to 369) are looked up
// in db; angleCodes are read in degrees. Throws DxfError naming the line of a bad value or of
// a reference to no object; its reason starts with where (the record's type).
AcDbDxfItems itemsFromTags(const Tags& tags, size_t first, size_t last, AcDbDatabase* db,
                           const std::set<short>& angleCodes, const std::string& source,
                           const std::string& where);
// The same for tags picked out of a record, which are not copied.
AcDbDxfItems itemsFromTags(const std::vector<const Tag*>& tags, AcDbDatabase* db,
                           const std::set<short>& angleCodes, const std::string& source,
                           const std::string& where);
// The items as tags: angles in degrees; with flatPoints, points of code 10 lose their z (the
// vertices of lightweight polylines).
void appendTags(Tags& out, const AcDbDxfItems& items, bool flatPoints = false);

// The handle of an object id as file text, "0" for none.
std::string handleText(AcDbObjectId id);

} // namespace dxf
