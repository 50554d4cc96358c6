#include "creators/section_outlines.h"

#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "foundation/error_report.h"
#include "objectfile/param_read.h"

#include <vector>

namespace {

using Points = std::vector<AcGePoint2d>;

struct Sizes {
    double w, d, tf, tw;
};

// One outline: whether it reads the thicknesses, its points from the sizes, and what a region
// that could not be made says.
struct OutlineRow {
    QelSectionOutline outline;
    bool readsThicknesses;
    Points (*points)(const Sizes&);
    const wchar_t* noRegion;
};

// clang-format off
const OutlineRow kOutlines[] = {
    {QelSectionOutline::WideFlange, true, [](const Sizes& s) -> Points {
         return {{0, 0}, {0, s.tf}, {s.w / 2 - s.tw / 2, s.tf}, {s.w / 2 - s.tw / 2, s.d - s.tf},
                 {0, s.d - s.tf}, {0, s.d}, {s.w, s.d}, {s.w, s.d - s.tf},
                 {s.w / 2 + s.tw / 2, s.d - s.tf}, {s.w / 2 + s.tw / 2, s.tf}, {s.w, s.tf},
                 {s.w, 0}}; },
     L"\nError creating region for extrusion,(SteelWideFlange)."},
    // The flange at the top, the stem's foot at y = 0.
    {QelSectionOutline::Tee, true, [](const Sizes& s) -> Points {
         return {{0, s.d - s.tf}, {0, s.d}, {s.w, s.d}, {s.w, s.d - s.tf},
                 {s.w / 2 + s.tw / 2, s.d - s.tf}, {s.w / 2 + s.tw / 2, 0},
                 {s.w / 2 - s.tw / 2, 0}, {s.w / 2 - s.tw / 2, s.d - s.tf}}; },
     L"\nError creating region for extrusion(CreateSteelTee)."},
    {QelSectionOutline::Channel, true, [](const Sizes& s) -> Points {
         return {{0, 0}, {0, s.d}, {s.w, s.d}, {s.w, s.d - s.tf}, {s.tw, s.d - s.tf},
                 {s.tw, s.tf}, {s.w, s.tf}, {s.w, 0}}; },
     L"\nError creating region for extrusion(CreateSteelChannel)."},
    {QelSectionOutline::TubeInner, true, [](const Sizes& s) -> Points {
         return {{s.tw, s.tf}, {s.tw, s.d - s.tf}, {s.w - s.tw, s.d - s.tf},
                 {s.w - s.tw, s.tf}}; },
     L"\nError creating region for extrusion(RectTube)."},
    // Both legs of the flange's thickness; the web's is read and plays no part.
    {QelSectionOutline::Angle, true, [](const Sizes& s) -> Points {
         return {{0, 0}, {0, s.d}, {s.w, s.d}, {s.w, s.d - s.tf}, {s.tf, s.d - s.tf},
                 {s.tf, 0}}; },
     L"\nError creating region for extrusion(Steel Angle)."},
    {QelSectionOutline::Rectangle, false, [](const Sizes& s) -> Points {
         return {{0, 0}, {0, s.d}, {s.w, s.d}, {s.w, 0}}; },
     L"\nError creating region for extrusion(SteelRectangular)."},
};
// clang-format on

const OutlineRow& rowOf(QelSectionOutline outline) {
    for (const OutlineRow& row : kOutlines)
        if (row.outline == outline) return row;
    return kOutlines[0];
}

// A size of the object into the member, which keeps its value when the object lacks it.
void readSize(QelObject* object, const char* name, double& member) {
    if (GetDoubleParam(object, name, member, true)) return;
    CString text;
    text.Format(L"\nError getting %hs of object.", name);
    QelReportError(text);
}

} // namespace

CCreateStdShape::CCreateStdShape(QelObject* object, const CString& sectionType)
    : sectionType(sectionType), object(object) {}

void CCreateStdShape::Build(QelSectionOutline outline) {
    const OutlineRow& row = rowOf(outline);
    readSize(object, "width", width);
    if (row.readsThicknesses || sectionType != L"Square")
        readSize(object, "depth", depth);
    else
        depth = width;
    if (row.readsThicknesses) {
        readSize(object, "flangeThickness", flangeThickness);
        readSize(object, "webThickness", webThickness);
    }
    pointCount = 0;
    for (const AcGePoint2d& point : row.points({width, depth, flangeThickness, webThickness})) {
        if (pointCount > 0 && point.isEqualTo(points[pointCount - 1])) continue;
        if (pointCount < int(std::size(points))) points[pointCount++] = point;
    }
}

AcDbPolyline* CCreateStdShape::MakeSectionPolyline() const {
    if (pointCount < 3) return nullptr;
    auto* polyline = new AcDbPolyline(unsigned(pointCount));
    for (int i = 0; i < pointCount; ++i)
        polyline->addVertexAt(unsigned(i), points[i], 0.0, -1.0, -1.0);
    polyline->setClosed(true);
    polyline->setNormal(AcGeVector3d::kZAxis);
    ApplyColour(object, polyline);
    return polyline;
}

AcDbPolyline* CCreateStdShape::MakePolyline(QelSectionOutline outline,
                                            AcDbBlockTableRecord* record) {
    Build(outline);
    AcDbPolyline* polyline = MakeSectionPolyline();
    if (!polyline) return nullptr;
    if (record->appendAcDbEntity(polyline) != Acad::eOk) {
        delete polyline;
        QelReportError(L"Error appending Polyline to database");
        return nullptr;
    }
    return polyline;
}

AcDbRegion* CCreateStdShape::MakeRegion(QelSectionOutline outline, AcDbBlockTableRecord* record,
                                        bool closeRegion) {
    Build(outline);
    AcDbPolyline* polyline = MakeSectionPolyline();
    AcDbRegion* region = polyline ? RegionFromCurve(polyline, record) : nullptr;
    // The polyline was only the region's boundary and never joined the drawing.
    delete polyline;
    if (!region) {
        QelReportError(rowOf(outline).noRegion);
        return nullptr;
    }
    ApplyColour(object, region);
    if (closeRegion) region->close();
    return region;
}
