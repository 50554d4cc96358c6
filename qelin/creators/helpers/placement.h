// Where an object's entities go: its pose as two matrices, the import transform of the file's
// chosen coordinate system, and its colour.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

// The object's "pose" as a translation and a rotation about the axis through its origin.
// Without a pose, or without either part, that part is the identity (every class's default
// rotation has the angle 0).
void PoseMatrices(QelObject* object, AcGeMatrix3d& translation, AcGeMatrix3d& rotation);
// The same, also giving the translation read (origin without one).
void PoseMatrices(QelObject* object, AcGeMatrix3d& translation, AcGeMatrix3d& rotation,
                  AcGePoint3d& origin);
// From the file's chosen coordinate system to the host's world: a move by minus the selected
// translation, then the rotation by minus the selected angle about its axis at the origin.
void ApplyImportTransform(AcDbEntity* entity);
// The matrix ApplyImportTransform applies.
AcGeMatrix3d QelImportTransform();
// Colour by layer under the override; otherwise the nearest colour index of the appearance's
// "diffuseColor" (white without one), and hidden inside an exclusion volume.
void ApplyColour(QelObject* object, AcDbEntity* entity);

// Back to the world coordinate system through the host's command.
void ResetUcs();
