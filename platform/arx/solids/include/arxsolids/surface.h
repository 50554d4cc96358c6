// A single curved face, as a solid's explode hands it out.
#pragma once

#include <arxsolids/types.h>

#include <memory>

namespace arxsolids {

class Surface {
public:
    Surface();
    ~Surface();
    Surface(const Surface& other);
    Surface& operator=(const Surface& other);
    Surface(Surface&&) noexcept;
    Surface& operator=(Surface&&) noexcept;

    bool isNull() const;
    SurfaceDesc description() const;
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

    // The bounding edges as curves, each in the direction the neighbouring face runs it (so a
    // rim circle's normal points out of the solid, as that of the end region does); seams and
    // collapsed edges are not edges of the boundary. A cylinder's side gives its two circles,
    // the lower one (along the axis) first; a cone's side its base circle, whose reversed normal
    // points to the apex; a sphere nothing.
    Status explode(std::vector<Curve>& curves) const;

    Status transformBy(const Matrix& matrix);

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
    friend struct Access;
};

} // namespace arxsolids
