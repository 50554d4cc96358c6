// What a pose fixes of a shape. An export measures a solid from its geometry, and a solid
// round about its axis carries no spin, so the same shape may come back in another pose: a
// cylinder turned about its own axis, a sphere turned any way, a torus end for end. Each class
// whose shape has such a symmetry names it here; two poses whose rotations differ only by it
// place the same shape.
#pragma once

#include <qel/qel.h>

#include <string>

namespace qeltool {

enum class Symmetry {
    None,          // the whole frame counts: poses are compared as turns
    AboutAxis,     // only local Z counts, with its direction
    AxisEitherWay, // only the line of local Z counts: either end up
    Any,           // no direction counts
    HalfTurnX,     // the frame counts up to a half turn about local X
    HalfTurnY,     // the frame counts up to a half turn about local Y
};

// The symmetry of an object's shape: by its class, where the params it holds keep it (a reducer
// only while concentric, an arc only as a full circle, a valve only without caps), each within
// the relative tolerance.
Symmetry symmetryOf(QelObject& object, double tolerance);

// How two rotations (four numbers each; null for none) differ for a shape of the symmetry: the
// angle in radians between the turns themselves, and the angle by which the shapes they place
// differ, 0 when only the symmetry lies between them.
struct PoseTurn {
    double turn = 0;
    double shape = 0;
    bool endForEnd = false; // local Z points the other way
};
PoseTurn comparePoseTurns(Symmetry symmetry, const double* a, const double* b);

// Why two different rotations place the same shape, for the report: "the same shape: turned
// about its own axis by 1.57 rad".
std::string sameShapeText(Symmetry symmetry, const PoseTurn& turn);

} // namespace qeltool
