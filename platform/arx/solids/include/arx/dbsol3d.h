// Three-dimensional solids as database entities.
#pragma once

#include <arxsolids/solid.h>

#include <string>

#include "arx/dbmain.h"

class AcDbRegion;

// The builders and operations need the solid open for write. A builder that gets input out of
// range returns a status and leaves the solid as it was; a builder whose modelling fails on
// valid input throws the status as an integer (Acad::ErrorStatus), as the host does.
class AcDb3dSolid : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDb3dSolid);
    AcDb3dSolid() = default;
    AcRxObject* clone() const override { return new AcDb3dSolid(*this); }

    bool isNull() const { return body().isNull(); }

    // Frustum about Z centred on the origin: base radii (xRadius, yRadius) at z = -height/2,
    // top x radius topXRadius at +height/2 (0 for a cone); elliptic when the radii differ.
    Acad::ErrorStatus createFrustum(double height, double xRadius, double yRadius,
                                    double topXRadius);
    // Box centred on the origin, edges along the axes.
    Acad::ErrorStatus createBox(double xLen, double yLen, double zLen);
    Acad::ErrorStatus createSphere(double radius);
    // Torus about Z centred on the origin; a minor radius not below the major one gives the
    // self-overlapping shape as one solid.
    Acad::ErrorStatus createTorus(double majorRadius, double minorRadius);
    // Along the region's normal (negative height: the other way); taper in radians, positive
    // narrowing towards the top.
    Acad::ErrorStatus extrude(const AcDbRegion* region, double height, double taperAngle = 0.0);
    // Along a line, arc, circle, ellipse, polyline (corners mitred), 2-D or 3-D polyline or
    // spline; the region sweeps as it lies. taperAngle must be 0.
    Acad::ErrorStatus extrudeAlongPath(const AcDbRegion* region, const AcDbCurve* path,
                                       double taperAngle = 0.0);
    Acad::ErrorStatus revolve(const AcDbRegion* region, const AcGePoint3d& axisPoint,
                              const AcGeVector3d& axisDir, double angleOfRevolution);

    // This becomes the union, intersection or difference; the other solid, open for write,
    // ends empty.
    Acad::ErrorStatus booleanOper(AcDb::BoolOperType operation, AcDb3dSolid* solid);
    // Keeps the part on the side the plane's normal points to; with getNegHalfToo the other
    // part comes back as a new solid the caller owns (null otherwise).
    Acad::ErrorStatus getSlice(const AcGePlane& plane, Adesk::Boolean getNegHalfToo,
                               AcDb3dSolid*& negHalfSolid);
    // The cut by the plane as a new region the caller owns (empty when the plane misses).
    Acad::ErrorStatus getSection(const AcGePlane& plane, AcDbRegion*& sectionRegion) const;

    // Unit density. Moments and products about the world axes; principal moments about the
    // centroid in ascending order; radii of gyration of the world moments.
    Acad::ErrorStatus getMassProp(double& volume, AcGePoint3d& centroid, double momInertia[3],
                                  double prodInertia[3], double prinMoments[3],
                                  AcGeVector3d prinAxes[3], double radiiGyration[3],
                                  AcDbExtents& extents) const;
    Acad::ErrorStatus getArea(double& area) const;
    // ASCII or binary STL; eNegativeCoordinates, with nothing written, for a model reaching
    // below zero in any coordinate. The deviation is kept for the interface.
    Acad::ErrorStatus stlOut(const ACHAR* fileName, Adesk::Boolean asciiFormat,
                             double maxSurfaceDeviation = 0.0) const;

    // Rigid motions and uniform scale; eCannotScaleNonUniformly otherwise.
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
    // Planar faces as AcDbRegion, curved faces as AcDbSurface.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;

    // Whether construction history is recorded; kept, no effect on the geometry.
    virtual Acad::ErrorStatus setRecordHistory(bool record);
    virtual bool recordHistory() const { return body_.recordHistory(); }

    // Host side: the geometry of the solid. A body read from SAT text is built on first use.
    const arxsolids::Solid& body() const;
    Acad::ErrorStatus setBody(arxsolids::Solid body);

    // A body the host cannot represent, kept as the SAT text it was read from: the solid shows
    // as a proxy (its body is empty) and is written back unchanged. Empty otherwise; a builder,
    // a boolean or setBody that succeeds clears it.
    const std::string& rawSat() const;
    // Empties the body and keeps the text; needs the solid open for write.
    Acad::ErrorStatus setRawSat(std::string sat);

    // Turns SAT text into a body; false when the host cannot represent it.
    using SatBuild = bool (*)(const std::string& sat, arxsolids::Solid& body);
    // The body is the one `sat` describes: built by `build` on first use (a null build: the
    // body already set is that one). The text stays the solid's stored form until something
    // changes the solid, so an untouched solid is written back as it was read, byte for byte.
    // Needs the solid open for write.
    Acad::ErrorStatus setStoredSat(std::string sat, SatBuild build);
    // The SAT text the solid was read from or last written as, while nothing has changed it;
    // empty otherwise.
    const std::string& storedSat() const { return storedSat_; }
    // Remembers the text the unchanged body was just written as: saving it again gives the same.
    void keepStoredSat(std::string sat) const { storedSat_ = std::move(sat); }
    // Whether the body has been built from its text (always, for a solid not read from text).
    bool isBuilt() const { return pendingBuild_ == nullptr; }

private:
    Acad::ErrorStatus rebuilt(Acad::ErrorStatus es);
    // The body for a change: built first, and no longer the text it was read from.
    arxsolids::Solid& edited();

    mutable arxsolids::Solid body_;
    mutable std::string rawSat_;
    mutable std::string storedSat_;
    mutable SatBuild pendingBuild_ = nullptr;
};
