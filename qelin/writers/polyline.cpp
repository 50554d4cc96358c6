// Polyline3d: the vertices of a 3-D, 2-D or lightweight polyline, in order, in metres.
#include "writers/curve_writers.h"
#include "writers/pose.h"

#include <arx/aced.h>
#include <arx/dbpl.h>
#include <arx/dbpoly.h>
#include <win/win.h>

#include <cmath>
#include <vector>

namespace {

using Points = std::vector<double>;

void add(Points& points, const AcGePoint3d& point) {
    double metres[3];
    QelPointOut(point, metres);
    points.insert(points.end(), metres, metres + 3);
}

void verticesOf3d(const AcDb3dPolyline& polyline, Points& points) {
    AcDbObjectIterator* it = polyline.vertexIterator();
    for (it->start(); !it->done(); it->step())
        if (auto* vertex = AcDb3dPolylineVertex::cast(it->entity()))
            add(points, vertex->position());
    delete it;
}

// Spline frame points are left out; a closed polyline ends on its first point again.
void verticesOf2d(const AcDb2dPolyline& polyline, Points& points) {
    AcDbObjectIterator* it = polyline.vertexIterator();
    bool any = false;
    AcGePoint3d first;
    for (it->start(); !it->done(); it->step()) {
        auto* vertex = AcDb2dVertex::cast(it->entity());
        if (!vertex || vertex->vertexType() == AcDb::k2dSplineCtlVertex) continue;
        const AcGePoint3d point = polyline.vertexPosition(*vertex);
        if (!any) first = point;
        any = true;
        add(points, point);
    }
    delete it;
    if (any && polyline.isClosed()) add(points, first);
}

// The steps of an arc segment by its sweep and radius. The bounds are strict on purpose: a radius
// of exactly 5, 20 or 60 keeps the sweep's default, and a sweep on a bound takes the next row.
int arcSteps(double sweep, double radius) {
    const int row = sweep > 0.0 && sweep < QelHalfPiSingle            ? 0
                    : sweep > QelHalfPiSingle && sweep < QelPiSingle  ? 1
                    : sweep > QelPiSingle && sweep < 4.71238899230957 ? 2
                                                                      : 3;
    constexpr int kDefault[] = {12, 24, 36, 48};
    if (radius < 5.0) return 12;
    if (radius > 5.0 && radius < 20.0) return 24;
    if (radius > 20.0 && radius < 60.0) return 36;
    if (radius > (row == 2 ? 80.0 : 60.0)) return 48;
    return kDefault[row];
}

void verticesOfLight(const AcDbPolyline& polyline, Points& points) {
    std::vector<AcGePoint3d> drawn;
    QelLightweightVertices(polyline, drawn);
    for (const AcGePoint3d& point : drawn)
        add(points, point);
}

} // namespace

void QelLightweightVertices(const AcDbPolyline& polyline, std::vector<AcGePoint3d>& points) {
    const unsigned count = polyline.numVerts();
    for (unsigned i = 0; i < count; ++i) {
        AcGePoint3d point;
        polyline.getPointAt(i, point);
        points.push_back(point);
        const AcDbPolyline::SegType type = polyline.segType(i);
        if (type == AcDbPolyline::kCoincident) {
            acutPrintf(L"\n Polyline Coincident (zero-length segment)");
        } else if (type == AcDbPolyline::kArc) {
            AcGeCircArc3d arc;
            polyline.getArcSegAt(i, arc);
            const double sweep = arc.endAng() - arc.startAng();
            const int steps = arcSteps(sweep, arc.radius());
            for (int k = 1; k <= steps; ++k)
                points.push_back(arc.pointAt(arc.startAng() + k * sweep / steps));
        }
    }
    if (count > 0 && polyline.isClosed()) {
        AcGePoint3d first;
        polyline.getPointAt(0, first);
        points.push_back(first);
    }
}

bool QelWritePolyline3d(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                        const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) {
        AfxMessageBox(L"Error getting array of vertices");
        return false;
    }
    Points points;
    bool known = true;
    if (auto* polyline3d = AcDb3dPolyline::cast(entity))
        verticesOf3d(*polyline3d, points);
    else if (auto* polyline2d = AcDb2dPolyline::cast(entity))
        verticesOf2d(*polyline2d, points);
    else if (auto* light = AcDbPolyline::cast(entity))
        verticesOfLight(*light, points);
    else
        known = false;
    entity->close();
    if (!known) {
        acutPrintf(L"\n Error finding Polyline type");
        return false;
    }
    target->AddOrReplaceParam(
        QelParam::Create("vertices", points.data(), static_cast<unsigned>(points.size())));
    return true;
}
