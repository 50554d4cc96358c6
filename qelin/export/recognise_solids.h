// A solid modelled by hand recognised by its geometry: a solid of revolution by the circles of
// its flat faces, a sphere and a torus by area and volume. The thresholds are the design's; a
// tag, where there is one, can veto an answer that contradicts it.
#pragma once

#include <arx/arx.h>

class AcDb3dSolid;
class QelMemberRecord;

// Cylinder, Cone, Flange, Reducer or Elbow (codes 9, 10, 11, 12, 15); -1 for none.
int recogniseRevolved(const AcDb3dSolid& solid, const QelMemberRecord* tag);
// True for a ball: its volume is the one its area gives a sphere.
bool recogniseSphere(const AcDb3dSolid& solid, const QelMemberRecord* tag);
// 1 for a whole torus, 2 for a part of one (an elbow), 0 for neither. id is the solid's, for the
// companion's opinion. flatEnds says the solid is known to have flat faces, as an elbow that
// recogniseRevolved found has; otherwise the solid is exploded to look.
int recogniseTorus(const AcDb3dSolid& solid, const AcDbObjectId& id, const QelMemberRecord* tag,
                   bool flatEnds = false);
