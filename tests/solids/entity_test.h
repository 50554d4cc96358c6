// Shared helpers of the tests of the solid, region and surface entities.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>

#include "arx/solids.h"
#include "arx_test.h"

namespace entitytest {

constexpr double kPi = std::numbers::pi;

struct Mass {
    double volume = 0.0;
    AcGePoint3d centroid;
    double moments[3] = {}, products[3] = {}, principal[3] = {}, gyration[3] = {};
    AcGeVector3d axes[3];
    AcDbExtents extents;
};

inline Mass massOf(const AcDb3dSolid& solid) {
    Mass m;
    EXPECT_EQ(solid.getMassProp(m.volume, m.centroid, m.moments, m.products, m.principal, m.axes,
                                m.gyration, m.extents),
              Acad::eOk);
    return m;
}

// Entities handed out by explode and friends, deleted with the holder.
struct Pieces {
    AcDbVoidPtrArray items;
    ~Pieces() {
        for (int i = 0; i < items.length(); ++i)
            delete static_cast<AcDbEntity*>(items[i]);
    }
    int size() const { return items.length(); }
    AcDbEntity* at(int i) const { return static_cast<AcDbEntity*>(items[i]); }
    template <class T>
    int count() const {
        int n = 0;
        for (int i = 0; i < size(); ++i)
            n += T::cast(at(i)) != nullptr;
        return n;
    }
};

// One region from curves that must make exactly one.
inline std::unique_ptr<AcDbRegion> regionOf(std::initializer_list<AcDbCurve*> curves) {
    AcDbVoidPtrArray in;
    for (AcDbCurve* c : curves)
        in.append(c);
    Pieces out;
    EXPECT_EQ(AcDbRegion::createFromCurves(in, out.items), Acad::eOk);
    for (AcDbCurve* c : curves)
        delete c;
    EXPECT_EQ(out.size(), 1);
    if (out.size() != 1) return nullptr;
    auto* region = AcDbRegion::cast(out.at(0));
    out.items.setLogicalLength(0);
    return std::unique_ptr<AcDbRegion>(region);
}

// Closed square polyline of side s with its lower left corner at (x, y), in the XY plane.
inline AcDbPolyline* square(double x, double y, double s) {
    auto* pl = new AcDbPolyline(4);
    pl->addVertexAt(0, AcGePoint2d(x, y));
    pl->addVertexAt(1, AcGePoint2d(x + s, y));
    pl->addVertexAt(2, AcGePoint2d(x + s, y + s));
    pl->addVertexAt(3, AcGePoint2d(x, y + s));
    pl->setClosed(true);
    return pl;
}

inline double areaOf(const AcDbRegion& region) {
    double area = 0.0;
    EXPECT_EQ(region.getArea(area), Acad::eOk);
    return area;
}

} // namespace entitytest
