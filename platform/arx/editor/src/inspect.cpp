// Commands that measure: MASSPROP, ID, DIST, and what LIST adds for solids and regions.
// Coordinates are shown in the current UCS, as the operator gave them.
#include "prompts.h"

#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <cmath>
#include <numbers>

namespace qelhost {

namespace {

constexpr double kDegree = 180.0 / std::numbers::pi;

AcGePoint3d inUcs(const AcGePoint3d& world) {
    return ucsToWorld().inverse() * world;
}

std::wstring column(const wchar_t* label, const std::wstring& value) {
    std::wstring line = label;
    line.resize(std::max<std::size_t>(line.size(), 22), L' ');
    return line + value + L"\n";
}

std::wstring span(double low, double high) {
    return number(low) + L"  --  " + number(high);
}

void tellBox(const AcDbExtents& box) {
    const AcGePoint3d lo = box.minPoint(), hi = box.maxPoint();
    tell(column(L"Bounding box:", L"X: " + span(lo.x, hi.x)) +
         column(L"", L"Y: " + span(lo.y, hi.y)) + column(L"", L"Z: " + span(lo.z, hi.z)));
}

void tellTriple(const wchar_t* label, const wchar_t* names[3], const double v[3]) {
    for (int i = 0; i < 3; ++i)
        tell(column(i == 0 ? label : L"", std::wstring(names[i]) + L": " + number(v[i])));
}

// The box of the entity in the UCS.
AcDbExtents ucsBox(const AcDbEntity& entity) {
    AcDbExtents box;
    if (entity.getGeomExtents(box) == Acad::eOk) box.transformBy(ucsToWorld().inverse());
    return box;
}

bool massOfSolid(const AcDb3dSolid& solid) {
    double volume = 0.0, mom[3], prod[3], prin[3], gyr[3];
    AcGePoint3d centroid;
    AcGeVector3d axes[3];
    AcDbExtents box;
    if (solid.isNull() ||
        solid.getMassProp(volume, centroid, mom, prod, prin, axes, gyr, box) != Acad::eOk)
        return false;
    const AcGePoint3d c = inUcs(centroid);
    tell(L"----------------   SOLIDS   ----------------\n\n");
    tell(column(L"Mass:", number(volume)) + column(L"Volume:", number(volume)));
    tellBox(ucsBox(solid));
    const double cv[3] = {c.x, c.y, c.z};
    const wchar_t* xyz[3] = {L"X", L"Y", L"Z"};
    const wchar_t* pairs[3] = {L"XY", L"YZ", L"ZX"};
    tellTriple(L"Centroid:", xyz, cv);
    tellTriple(L"Moments of inertia:", xyz, mom);
    tellTriple(L"Products of inertia:", pairs, prod);
    tellTriple(L"Radii of gyration:", xyz, gyr);
    tell(L"Principal moments and X-Y-Z directions about centroid:\n");
    const wchar_t* names[3] = {L"I", L"J", L"K"};
    for (int i = 0; i < 3; ++i)
        tell(L"                  " + std::wstring(names[i]) + L": " + number(prin[i]) +
             L" along [" + number(axes[i].x) + L" " + number(axes[i].y) + L" " + number(axes[i].z) +
             L"]\n");
    return true;
}

bool massOfRegion(const AcDbRegion& region) {
    double area = 0.0;
    arxsolids::Vec3 c;
    if (region.isNull() || region.getArea(area) != Acad::eOk ||
        region.body().getCentroid(c) != arxsolids::Status::eOk)
        return false;
    const AcGePoint3d centroid = inUcs({c.x, c.y, c.z});
    tell(L"----------------   REGIONS   ----------------\n\n");
    tell(column(L"Area:", number(area)));
    tellBox(ucsBox(region));
    const double cv[3] = {centroid.x, centroid.y, centroid.z};
    const wchar_t* xyz[3] = {L"X", L"Y", L"Z"};
    tellTriple(L"Centroid:", xyz, cv);
    return true;
}

int massprop(CommandContext& ctx) {
    bool cancelled = false;
    const SelectionSet set = selectObjects(ctx, cancelled);
    if (cancelled) return RTCAN;
    int measured = 0;
    for (AcDbObjectId id : set) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        if (auto* solid = AcDb3dSolid::cast(entity))
            measured += massOfSolid(*solid);
        else if (auto* region = AcDbRegion::cast(entity))
            measured += massOfRegion(*region);
        entity->close();
    }
    if (measured == 0) {
        ctx.invalid(L"Select solids or regions: nothing to measure.");
        return set.empty() ? RTNORM : RTERROR;
    }
    return RTNORM;
}

int id(CommandContext& ctx) {
    AcGePoint3d p;
    if (askPoint(ctx, L"Specify point: ", p) == Answer::kCancel) return RTCAN;
    const AcGePoint3d u = inUcs(p);
    tell(L"X = " + number(u.x) + L"     Y = " + number(u.y) + L"     Z = " + number(u.z) + L"\n");
    return RTNORM;
}

int dist(CommandContext& ctx) {
    AcGePoint3d a, b;
    if (askPoint(ctx, L"Specify first point: ", a) == Answer::kCancel ||
        askPoint(ctx, L"Specify second point: ", b) == Answer::kCancel)
        return RTCAN;
    const AcGePoint3d ua = inUcs(a), ub = inUcs(b);
    const AcGeVector3d d = ub - ua;
    double inPlane = std::atan2(d.y, d.x) * kDegree;
    if (inPlane < 0) inPlane += 360.0;
    const double fromPlane = std::atan2(d.z, std::hypot(d.x, d.y)) * kDegree;
    tell(L"Distance = " + number(d.length()) + L",  Angle in XY Plane = " + number(inPlane) +
         L",  Angle from XY Plane = " + number(fromPlane) + L"\n" + L"Delta X = " + number(d.x) +
         L",  Delta Y = " + number(d.y) + L",  Delta Z = " + number(d.z) + L"\n");
    return RTNORM;
}

const ProcessorCommand kCommands[] = {
    {L"MASSPROP", massprop},
    {L"ID", id},
    {L"DIST", dist},
};

} // namespace

void describeBody(const AcDbEntity& entity) {
    if (auto* solid = AcDb3dSolid::cast(&entity)) {
        if (solid->isNull()) {
            tell(L"Solid kept as read: its body is not modelled.\n");
            return;
        }
        double area = 0.0;
        solid->getArea(area);
        tell(column(L"Volume:", number(measureVolume(*solid))) + column(L"Area:", number(area)));
        tellBox(ucsBox(*solid));
    } else if (auto* region = AcDbRegion::cast(&entity)) {
        double area = 0.0;
        AcGeVector3d normal;
        if (region->isNull() || region->getArea(area) != Acad::eOk) return;
        region->getNormal(normal);
        tell(column(L"Area:", number(area)) +
             column(L"Normal:",
                    number(normal.x) + L"," + number(normal.y) + L"," + number(normal.z)));
        tellBox(ucsBox(*region));
    }
}

double measureVolume(const AcDb3dSolid& solid) {
    double volume = 0.0, mom[3], prod[3], prin[3], gyr[3];
    AcGePoint3d centroid;
    AcGeVector3d axes[3];
    AcDbExtents box;
    if (solid.getMassProp(volume, centroid, mom, prod, prin, axes, gyr, box) != Acad::eOk)
        return 0.0;
    return volume;
}

std::span<const ProcessorCommand> inspectCommands() {
    return kCommands;
}

} // namespace qelhost
