// The dispatch of the kinds that leave as meshes, point sets and exclusion volumes.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

class QelOutObject;

// A mesh: as read when it came from the reference file, else from the drawing.
bool dispatchMesh(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                  const AcGeMatrix3d& m);
// A thick arc as a new TriMesh.
bool dispatchArcPatch(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                      const AcGeMatrix3d& m);
// A point set leaves only from the reference file; without one it is told as skipped.
bool dispatchPointSet(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id);
// An exclusion volume, with the tree it holds when it came from the reference file.
bool dispatchExclusionVolume(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                             const AcGeMatrix3d& m);
