// The entities drawn for one file object: the members of the group the import made for it.
#pragma once

#include <arx/arx.h>

// The entities of the first group among the entity's persistent reactors, in the group's order;
// their count, 0 when the entity is in no group (or won't open).
int groupMembers(const AcDbObjectId& id, AcDbObjectIdArray& members);

// True when the entity opens and is a text (annotation or contour label).
bool QelIsText(const AcDbObjectId& id);
