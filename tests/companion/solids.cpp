#include "solids.h"

#include <gtest/gtest.h>

#include <cmath>

namespace companiontest {

namespace {

AcDbRegion* onlyRegion(AcDbVoidPtrArray& regions) {
    EXPECT_EQ(regions.length(), 1);
    for (int i = 1; i < regions.length(); ++i)
        delete static_cast<AcDbEntity*>(regions[i]);
    return regions.length() > 0 ? static_cast<AcDbRegion*>(regions[0]) : nullptr;
}

AcDbRegion* regionOfCurve(AcDbCurve* curve) {
    AcDbVoidPtrArray in, out;
    in.append(curve);
    EXPECT_EQ(AcDbRegion::createFromCurves(in, out), Acad::eOk);
    delete curve;
    return onlyRegion(out);
}

AcDb3dSolid* built(AcDb3dSolid* solid, Acad::ErrorStatus status) {
    EXPECT_EQ(status, Acad::eOk);
    return solid;
}

} // namespace

AcDb3dSolid* sphere(double radius, const AcGeVector3d& at) {
    auto* s = new AcDb3dSolid;
    EXPECT_EQ(s->createSphere(radius), Acad::eOk);
    return built(s, s->transformBy(AcGeMatrix3d::translation(at)));
}

AcDb3dSolid* torus(double major, double minor) {
    auto* s = new AcDb3dSolid;
    return built(s, s->createTorus(major, minor));
}

AcDb3dSolid* cylinder(double radius, double height) {
    auto* s = new AcDb3dSolid;
    return built(s, s->createFrustum(height, radius, radius, radius));
}

AcDb3dSolid* box(double x, double y, double z, const AcGeMatrix3d& place) {
    auto* s = new AcDb3dSolid;
    EXPECT_EQ(s->createBox(x, y, z), Acad::eOk);
    return built(s, s->transformBy(place));
}

AcDb3dSolid* arcElbow(double radius) {
    AcDbRegion* profile =
        regionOfCurve(new AcDbCircle(AcGePoint3d(5, 0, 0), AcGeVector3d::kYAxis, radius));
    AcDbArc path(AcGePoint3d::kOrigin, 5.0, 0.0, kPi / 2);
    auto* s = new AcDb3dSolid;
    const Acad::ErrorStatus status = s->extrudeAlongPath(profile, &path);
    delete profile;
    return built(s, status);
}

AcDb3dSolid* mitredElbow(double radius) {
    AcDbRegion* profile =
        regionOfCurve(new AcDbCircle(AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, radius));
    AcDbPolyline path(3);
    path.addVertexAt(0, AcGePoint2d(0, 0));
    path.addVertexAt(1, AcGePoint2d(10, 0));
    path.addVertexAt(2, AcGePoint2d(10, 10));
    auto* s = new AcDb3dSolid;
    const Acad::ErrorStatus status = s->extrudeAlongPath(profile, &path);
    delete profile;
    return built(s, status);
}

AcDb3dSolid* hemisphere(double radius) {
    AcDb3dSolid* s = sphere(radius);
    AcDb3dSolid* lower = nullptr;
    EXPECT_EQ(s->getSlice(AcGePlane(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis), false, lower),
              Acad::eOk);
    return s;
}

AcDbPolyline* polygon(const std::vector<AcGePoint2d>& corners) {
    auto* pl = new AcDbPolyline(unsigned(corners.size()));
    for (unsigned i = 0; i < corners.size(); ++i)
        pl->addVertexAt(i, corners[i]);
    pl->setClosed(true);
    return pl;
}

AcDbRegion* region(AcDbPolyline* outline, std::vector<AcDbCurve*> holes) {
    AcDbRegion* out = regionOfCurve(outline);
    for (AcDbCurve* hole : holes) {
        AcDbRegion* cut = regionOfCurve(hole);
        EXPECT_EQ(out->booleanOper(AcDb::kBoolSubtract, cut), Acad::eOk);
        delete cut;
    }
    return out;
}

AcDbRegion* disc(double radius) {
    return regionOfCurve(new AcDbCircle(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, radius));
}

AcDb3dSolid* extrusion(AcDbRegion* profile, double height) {
    auto* s = new AcDb3dSolid;
    const Acad::ErrorStatus status = s->extrude(profile, height);
    delete profile;
    return built(s, status);
}

std::vector<AcGePoint2d> regularPolygon(int n, double radius) {
    std::vector<AcGePoint2d> corners;
    for (int k = 0; k < n; ++k)
        corners.emplace_back(radius * std::cos(2 * kPi * k / n),
                             radius * std::sin(2 * kPi * k / n));
    return corners;
}

} // namespace companiontest
