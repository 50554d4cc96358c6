// A bounded planar area, possibly with holes and in several pieces: what the host calls a region.
#pragma once

#include <arxsolids/types.h>

#include <memory>

namespace arxsolids {

class Region {
public:
    Region();
    ~Region();
    Region(const Region& other);
    Region& operator=(const Region& other);
    Region(Region&&) noexcept;
    Region& operator=(Region&&) noexcept;

    // One region per closed loop found among the curves, in any order and direction. Closed
    // curves (circles, closed polylines, whole ellipses) are loops of their own; an open polyline
    // whose ends meet counts as closed. Nested loops give separate regions: holes are made by
    // subtracting. Fails, with `regions` left empty, on an open loop (eOpenLoop), a loop that
    // crosses itself (eSelfIntersecting), a loop not in one plane (eNonPlanarEntity) or a
    // degenerate curve (eInvalidInput).
    static Status createFromCurves(const std::vector<Curve>& curves, std::vector<Region>& regions);

    // A region from its boundary, as brep() describes it: planar faces only (see Solid).
    static Status createFromBrep(const Brep& brep, Region& region);

    bool isNull() const;

    // `other` must lie in the same plane (eNonCoplanarGeometry otherwise, nothing changes). On
    // success this holds the result, possibly empty, and `other` ends empty.
    Status booleanOper(BoolOperType operation, Region& other);

    Status getArea(double& area) const;
    Status getCentroid(Vec3& centroid) const;
    // Unit normal of the region's plane: the side from which its outer loops run counter-clockwise.
    Status getNormal(Vec3& normal) const;
    // The tightest box (on toroidal and free-form faces it may stand out by the point
    // resolution, 1e-7): a search over the curved faces, done once and kept until the body
    // changes. For the exact size of the body.
    Status getGeomExtents(Extents& extents) const;
    // A box that holds the body, from the bounds of each face's own geometry (no search), also
    // kept until the body changes: as tight as the exact one for a body whose curved faces lie
    // along the axes, larger by up to a fraction of the size of a tilted torus or free-form
    // face. For zooming and picking.
    Status getBoundingBox(Extents& extents) const;

    // The boundary as curves, loop by loop; each curve runs in the loop's direction (outer loops
    // counter-clockwise about the normal, holes clockwise).
    Status explode(std::vector<Curve>& curves) const;

    // Similarity transforms only (rotation, translation, uniform scale, mirror); anything else
    // gives eCannotScaleNonUniformly and leaves the region as it was.
    Status transformBy(const Matrix& matrix);

    Brep brep() const;
    TopologyCounts topology() const;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
    friend struct Access;
};

} // namespace arxsolids
