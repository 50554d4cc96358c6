// A 3-D solid body, possibly of several disjoint lumps, or empty.
#pragma once

#include <arxsolids/region.h>
#include <arxsolids/surface.h>
#include <arxsolids/types.h>

#include <memory>
#include <string>
#include <variant>

namespace arxsolids {

// A piece of an exploded solid: planar faces become regions, curved faces surfaces.
using Piece = std::variant<Region, Surface>;

class Solid {
public:
    Solid();
    ~Solid();
    Solid(const Solid& other);
    Solid& operator=(const Solid& other);
    Solid(Solid&&) noexcept;
    Solid& operator=(Solid&&) noexcept;

    bool isNull() const;

    // ---- Builders: on success the solid is replaced; on failure it is left as it was. ----

    // Frustum of a cone about Z, centred on the origin: base at z = -height/2 with radii
    // (xRadius, yRadius), top at +height/2 with x radius topXRadius and the same shape; topXRadius
    // 0 makes a cone. Height and base radii > 0, topXRadius >= 0 (eInvalidInput otherwise).
    // Elliptic when xRadius and yRadius differ.
    Status createFrustum(double height, double xRadius, double yRadius, double topXRadius);
    // Box centred on the origin, edges along the axes.
    Status createBox(double xLen, double yLen, double zLen);
    Status createSphere(double radius);
    // Torus about Z in the XY plane, centred on the origin. minorRadius > 0. A minor radius not
    // below the major one gives the self-overlapping shape as one solid (the space swept by the
    // tube); a negative major radius with |major| < minor the lemon-shaped inner part.
    Status createTorus(double majorRadius, double minorRadius);

    // Extrusion of a region along its normal by height (negative: the other way); taperAngle in
    // radians, positive narrows the solid towards the top, |taper| < pi/2.
    Status extrude(const Region& region, double height, double taperAngle);
    // Sweep of a region along a path (line, arc, circle, ellipse arc, polylines, spline). The
    // region sweeps as it lies; a straight path translates it. Corners of polyline paths are
    // mitred. The region's plane must not contain the path's start tangent (eDegenerateGeometry).
    // taperAngle must be 0.
    Status extrudeAlongPath(const Region& region, const Curve& path, double taperAngle);
    // Revolution of a region about the axis (a point and a direction) through angle (radians,
    // above 0; more than a full turn is a full turn); the axis must not cross the region's
    // interior (eInvalidInput) nor run along its normal (eDegenerateGeometry).
    Status revolve(const Region& region, const Vec3& axisPoint, const Vec3& axisDir, double angle);

    // A closed body from its boundary, as brep() describes it (the way back from a stored
    // drawing). Faces on planes, cylinders, cones, spheres and tori, and free-form faces by
    // their B-spline (a closed one whose rims are single closed edges is the whole of it); a
    // free-form face without a B-spline gives eNotApplicable, a malformed B-spline or indices
    // out of range eInvalidInput, a boundary that does not close into a solid
    // eGeneralModelingFailure.
    Status createFromBrep(const Brep& brep);

    // ---- Operations ----

    // This becomes the union, intersection or difference; the result may be empty or in pieces.
    // On success `other` ends empty. Both must be non-empty (eNotApplicable).
    Status booleanOper(BoolOperType operation, Solid& other);
    // Keeps the part on the side the plane's normal points to; with getNegHalfToo the other part
    // goes to negHalf (which may end empty). A plane missing the solid leaves everything on one
    // side: this may end empty.
    Status getSlice(const Plane& plane, bool getNegHalfToo, Solid* negHalf);
    // The cut of the solid by the plane, as a region (empty when the plane misses it).
    Status getSection(const Plane& plane, Region& section) const;

    Status getMassProp(MassProps& props) const;
    Status getArea(double& area) const;
    // The tightest box (on toroidal and free-form faces it may stand out by the point
    // resolution, 1e-7): a search over the curved faces, done once and kept until the body
    // changes. For the exact size of the body.
    Status getGeomExtents(Extents& extents) const;
    // A box that holds the body, from the bounds of each face's own geometry (no search), also
    // kept until the body changes: as tight as the exact one for a body whose curved faces lie
    // along the axes, larger by up to a fraction of the size of a tilted torus or free-form
    // face. For zooming and picking.
    Status getBoundingBox(Extents& extents) const;

    // Faces in order: planar faces as regions (normal outward), curved faces as surfaces.
    Status explode(std::vector<Piece>& pieces) const;

    // Similarity transforms only (rotation, translation, uniform scale, mirror); anything else
    // gives eCannotScaleNonUniformly and leaves the solid as it was.
    Status transformBy(const Matrix& matrix);

    // ASCII (or binary) STL of a faceted copy. Refuses (eNegativeCoordinates) a model reaching
    // below zero in any coordinate, writing nothing.
    Status stlOut(const std::string& fileName, bool asciiFormat) const;

    // The host's switch for recording construction history; kept, with no effect on geometry.
    void setRecordHistory(bool record);
    bool recordHistory() const;

    TopologyCounts topology() const;
    Brep brep() const;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
    friend struct Access;
};

} // namespace arxsolids
