// getType: what kind of curved faces a solid has, so that the export can tell a sphere or a
// torus that its own measures did not recognise.
#pragma once

#include <arx/arx.h>

namespace toviqelout {

// The first (and only) item of getType's reply, group 90.
enum SolidType : Adesk::Int32 {
    kNotASolid = 0,   // any other entity, regions included, or an empty solid
    kPlanar = 1,      // a solid bounded by planes only
    kSpherical = 2,   // every curved face spherical (a sphere, a hemisphere with its flat face)
    kToroidal = 3,    // every curved face toroidal (a torus, an elbow swept along an arc)
    kOtherCurved = 4, // curved faces of another kind, or of several kinds
};

SolidType solidType(const AcDbEntity& entity);

// The function: its one argument is the entity's handle as text; the reply is one item of
// group 90 holding the SolidType, or empty when the handle names no entity.
int getType();

} // namespace toviqelout
