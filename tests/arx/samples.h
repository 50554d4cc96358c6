// One sample entity of every kind, with its box worked out by hand.
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "arx_test.h"

struct Sample {
    std::string name;
    std::function<AcDbEntity*(AcDbDatabase&)> make;
    AcGePoint3d min, max;
};

inline AcDbObjectId blockWithUnitLine(AcDbDatabase& db, const ACHAR* name) {
    AcDbBlockTable* blocks = nullptr;
    db.getBlockTable(blocks, AcDb::kForWrite);
    auto* block = new AcDbBlockTableRecord;
    block->setName(name);
    AcDbObjectId id;
    blocks->add(id, block);
    auto* line = new AcDbLine({0, 0, 0}, {1, 0, 0});
    block->appendAcDbEntity(line);
    line->close();
    block->close();
    blocks->close();
    return id;
}

inline std::vector<Sample> entitySamples() {
    const double s10 = std::sin(10 * M_PI / 180), c10 = std::cos(10 * M_PI / 180);
    return {
        {"Line",
         [](AcDbDatabase&) {
             return new AcDbLine({0, 0, 0}, {3, 4, 0});
         },
         {0, 0, 0},
         {3, 4, 0}},
        {"Circle",
         [](AcDbDatabase&) {
             return new AcDbCircle({1, 2, 3}, AcGeVector3d::kZAxis, 2);
         },
         {-1, 0, 3},
         {3, 4, 3}},
        {"CircleTilted",
         [](AcDbDatabase&) {
             return new AcDbCircle({0, 0, 0}, AcGeVector3d::kXAxis, 1);
         },
         {0, -1, -1},
         {0, 1, 1}},
        {"ArcQuarter",
         [](AcDbDatabase&) {
             return new AcDbArc({0, 0, 0}, 1, 0, M_PI / 2);
         },
         {0, 0, 0},
         {1, 1, 0}},
        {"ArcOverZero",
         [](AcDbDatabase&) {
             return new AcDbArc({0, 0, 0}, 1, 350 * M_PI / 180, 10 * M_PI / 180);
         },
         {c10, -s10, 0},
         {1, s10, 0}},
        {"Ellipse",
         [](AcDbDatabase&) {
             return new AcDbEllipse({0, 0, 0}, AcGeVector3d::kZAxis, {0, 2, 0}, 0.5);
         },
         {-1, -2, 0},
         {1, 2, 0}},
        {"EllipseHalf",
         [](AcDbDatabase&) {
             return new AcDbEllipse({0, 0, 0}, AcGeVector3d::kZAxis, {0, 2, 0}, 0.5, 0, M_PI);
         },
         {-1, -2, 0},
         {0, 2, 0}},
        {"LwPolyline",
         [](AcDbDatabase&) {
             auto* p = new AcDbPolyline;
             p->addVertexAt(0, {0, 0}, 1.0);
             p->addVertexAt(1, {2, 0});
             p->addVertexAt(2, {2, 3}, 0.0, 0.5, 0.25);
             return p;
         },
         {0, -1, 0},
         {2, 3, 0}},
        {"Polyline2d",
         [](AcDbDatabase&) {
             AcGeDoubleArray bulges = {1.0, 0.0};
             return new AcDb2dPolyline(AcDb::k2dSimplePoly, {{0, 0, 0}, {2, 0, 0}}, 5.0, false, 0,
                                       0, &bulges);
         },
         {0, -1, 5},
         {2, 0, 5}},
        {"Polyline3d",
         [](AcDbDatabase&) {
             return new AcDb3dPolyline(AcDb::k3dSimplePoly, {{0, 0, 0}, {1, 2, 3}, {-1, 0, 1}});
         },
         {-1, 0, 0},
         {1, 2, 3}},
        {"SplineFit",
         [](AcDbDatabase&) {
             return new AcDbSpline({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, {1, 0, 0}, {1, 0, 0});
         },
         {0, 0, 0},
         {2, 1, 0}},
        {"SplineNurbs",
         [](AcDbDatabase&) {
             return new AcDbSpline(1, true, false, false, {{0, 0, 0}, {1, 2, 0}}, {0, 0, 1, 1},
                                   {1, 2});
         },
         {0, 0, 0},
         {1, 2, 0}},
        {"Point",
         [](AcDbDatabase&) {
             return new AcDbPoint({1, 2, 3});
         },
         {1, 2, 3},
         {1, 2, 3}},
        {"Text",
         [](AcDbDatabase&) {
             return new AcDbText({0, 0, 0}, L"AB", {}, 2.0);
         },
         {0, 0, 0},
         {4, 2, 0}},
        {"Face",
         [](AcDbDatabase&) {
             return new AcDbFace({0, 0, 0}, {1, 0, 0}, {1, 1, 1}, {0, 1, 1}, true, false);
         },
         {0, 0, 0},
         {1, 1, 1}},
        {"Solid",
         [](AcDbDatabase&) {
             auto* s = new AcDbSolid({0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {2, 1, 0});
             s->setThickness(3);
             return s;
         },
         {0, 0, 0},
         {2, 1, 3}},
        {"Trace",
         [](AcDbDatabase&) {
             return new AcDbTrace({0, 0, 0}, {2, 0, 0}, {0, 1, 0}, {2, 1, 0});
         },
         {0, 0, 0},
         {2, 1, 0}},
        {"PolyFaceMesh",
         [](AcDbDatabase&) {
             auto* m = new AcDbPolyFaceMesh;
             for (AcGePoint3d p : {AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0), AcGePoint3d(1, 1, 0),
                                   AcGePoint3d(0, 1, 2)})
                 m->appendVertex(new AcDbPolyFaceMeshVertex(p));
             m->appendFaceRecord(new AcDbFaceRecord(1, 2, 3, -4));
             return m;
         },
         {0, 0, 0},
         {1, 1, 2}},
        {"PolygonMesh",
         [](AcDbDatabase&) {
             return new AcDbPolygonMesh(AcDb::kSimpleMesh, 2, 2,
                                        {{0, 0, 0}, {1, 0, 0}, {0, 1, 1}, {1, 1, 5}}, false, true);
         },
         {0, 0, 0},
         {1, 1, 5}},
        {"BlockReference",
         [](AcDbDatabase& db) {
             auto* ref = new AcDbBlockReference({10, 0, 0}, blockWithUnitLine(db, L"UnitLine"));
             ref->setRotation(M_PI / 2);
             ref->setScaleFactors(AcGeScale3d(2));
             return ref;
         },
         {10, 0, 0},
         {10, 2, 0}},
    };
}

inline void PrintTo(const Sample& sample, std::ostream* os) {
    *os << sample.name;
}
