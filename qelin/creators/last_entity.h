// The entity appended last, by the names of the host's entity interface: creators that build
// through help entities (a circle for a region, a region for a solid) find them this way, read
// their handles and erase them again.
#pragma once

#include <arx/arx.h>

// The name of the last entity; false (the name untouched) when there is none.
bool QelLastEntity(ads_name name);
// The handle of the last entity as its group 5 gives it; false when there is none.
bool QelLastEntityHandle(AcDbHandle& handle);
// Erases the last entity: "Error obtaining ent handle." when there is none, "Error removing
// Redundant entity" when it would not go.
void QelEraseLastEntity();
// Erases the named entity; failed is printed when it would not go.
void QelEraseEntity(const ads_name name, const wchar_t* failed);
