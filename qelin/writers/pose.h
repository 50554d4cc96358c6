// Poses, lengths and frames shared by the writers: what they put in "pose", and in metres.
#pragma once

#include <arx/gevec.h>

class QelObject;

// Pi and a full turn as the file has always carried them: their single-precision values.
inline constexpr double QelPiSingle = 3.1415927410125732;
inline constexpr double QelTwoPiSingle = 6.2831854820251465;
inline constexpr double QelHalfPiSingle = 1.5707963705062866;
// 4 pi and 4 pi squared likewise: a sphere's and a torus's area over their radii.
inline constexpr double QelFourPiSingle = 12.566370964050293;
inline constexpr double QelFourPiSquaredSingle = 39.47842025756836;

// A drawing length in metres by the export units.
double QelLengthOut(double drawing);
// A drawing point in metres, as three doubles.
void QelPointOut(const AcGePoint3d& point, double out[3]);

// The rotation of the frame whose Z axis is zAxis and whose X axis is xAxis.
void QelRotationFromAxes(const AcGePoint3d& origin, const AcGeVector3d& zAxis,
                         const AcGeVector3d& xAxis, double rotation[4]);
// The X axis of a plane by the arbitrary-axis rule: the world's Z (or Y, for a normal close to
// Z) crossed with the normal. A normal along Z gives the world's X.
AcGeVector3d QelPlaneXAxis(const AcGeVector3d& normal);

// A real param, replaced when the object has it.
void QelSetReal(QelObject* object, const char* name, double value);

// Sets "pose" of the object: rotation only when it turns, translation always with it, and no
// "pose" at all when it neither turns nor moves.
void QelWritePose(QelObject* object, const double rotation[4], const AcGePoint3d& translation);

// The angle from a to b, 0 to a full turn, counted positive about ref; 0 for a zero or equal
// vector, the file's single-precision pi for opposite ones.
double QelAngleBetween(const AcGeVector3d& a, const AcGeVector3d& b, const AcGeVector3d& ref);
// A "pose" of both rotation and translation (metres), even when they are the identity.
void QelWriteWholePose(QelObject* target, const double rotation[4], const AcGePoint3d& origin);
