// A solid that nothing else describes, as a triangle mesh: the host writes it as STL text to a
// temporary file, and the vertices read back are merged where they are exactly equal.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

// Fills the TriMesh target from the solid as it lies in the drawing (m is not applied). False,
// with its line printed, when the solid won't open, the STL can't be written or read, or holds
// no triangle; the solid is back in its place in every case.
bool writeGenericMesh(QelObject* target, QelWriter& writer, AcDbObjectId id, const AcGeMatrix3d& m);
