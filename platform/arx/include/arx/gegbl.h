// Kinds of the geometry library's curves and surfaces, as the boundary walk names the
// geometry under its edges and faces.
#pragma once

struct AcGe {
    enum EntityId {
        // Curves.
        kLineSeg3d,
        kCircArc3d, // a whole circle as well as an arc
        kEllipArc3d,
        kPolyline3d,
        kNurbCurve3d,
        // Surfaces.
        kPlane,
        kCylinder,
        kCone,
        kSphere,
        kTorus,
        kNurbSurface,
    };
};
