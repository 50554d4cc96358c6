// Steel: StdShape measured on its outline, StdShapeExtrusion from its tag and its centre lines.
#include "writers/curve_writers.h"
#include "writers/frame.h"
#include "writers/patch_writers.h"
#include "writers/pose.h"

#include "objectfile/type_codes.h"
#include "records/member_record.h"

#include <arx/aced.h>
#include <arx/dbpl.h>
#include <win/win.h>

#include <cmath>
#include <vector>

namespace {

using Points = std::vector<AcGePoint3d>;

const char* sectionName(int index) {
    static const char* const kNames[] = {
        "SteelWideFlange", "SteelTee", "SteelChannel", "SteelRectangularTube",
        "SteelAngle",      "SteelBar", "Square",       "SteelRectangularTube"};
    return index >= 0 && index < 8 ? kNames[index] : "Unknown";
}

// An untagged outline's section by its count of points (the first one again included).
int sectionByCount(std::size_t count) {
    switch (count) {
    case 7:
        return 4;
    case 9:
        return 1;
    case 5:
        return 7;
    default:
        return 0;
    }
}

// How many points a section's measures read: fewer, and the outline is not that section.
std::size_t pointsNeeded(int index) {
    switch (index) {
    case 0:
        return 12;
    case 1:
    case 2:
        return 8;
    case 4:
        return 4;
    default:
        return 3;
    }
}

void setLength(QelObject* target, const char* name, double drawing) {
    QelSetReal(target, name, QelLengthOut(drawing));
}

// A centre line of the member: its ends, when the handle names a line tagged for this member.
bool centreLine(const AcDbHandle& handle, int objectIndex, int memberType, AcGePoint3d& start,
                AcGePoint3d& end) {
    if (handle.isNull()) return false;
    ACHAR text[32] = L"";
    handle.getIntoAsciiBuffer(text, 32);
    ads_name name;
    if (acdbHandEnt(text, name) != RTNORM) return false;
    QelMemberRecord tag;
    if (!tag.Load(name) || tag.objectIndex != objectIndex || tag.memberType != memberType)
        return false;
    AcDbObjectId id;
    if (acdbGetObjectId(id, name) != Acad::eOk) return false;
    AcDbLine* line = nullptr;
    if (acdbOpenObject(line, id, AcDb::kForRead) != Acad::eOk) return false;
    start = line->startPoint();
    end = line->endPoint();
    line->close();
    return true;
}

// The member's frame from its centre line and bottom line: X across the section, Y up it, Z
// along the member, at the section's lower-left corner. False leaves the pose alone.
bool memberFrame(const QelMemberRecord& tag, QelFrame& frame) {
    const int index = tag.partIndex;
    if (index >= 6) return false;
    AcGePoint3d centreStart, centreEnd, bottomStart, bottomEnd;
    if (!centreLine(tag.handle0, tag.objectIndex, QelCode::CenterLine, centreStart, centreEnd) ||
        !centreLine(tag.handle1, tag.objectIndex, QelCode::BottomCenterLine, bottomStart,
                    bottomEnd))
        return false;
    AcGePoint3d up = centreStart;
    if (index == 2 || index == 4) {
        // The bottom line runs along the section's corner: the point above it lies on the turn
        // of the diagonal to the centre by the section's own angle.
        const AcGeVector3d along = (centreEnd - centreStart).normal();
        AcGeVector3d turned = (centreStart - bottomStart).normal();
        turned.rotateBy(std::atan2(tag.width, tag.depth), along);
        up = bottomStart +
             turned * std::sqrt(tag.width * tag.width * 0.25 + tag.depth * tag.depth * 0.25);
    }
    QelFrame line;
    if (!QelFrameFromThreePoints(bottomStart, bottomEnd, up, line)) {
        acutPrintf(L"\n Warning: skipping degenerate object");
        return false;
    }
    // A quarter turn about the line frame's Y: the member's axis becomes Z.
    frame.x = -line.z;
    frame.y = line.y;
    frame.z = line.x;
    frame.origin = line.origin;
    if (index != 2 && index != 4) frame.origin = line.origin - frame.x * (tag.width / 2.0);
    return true;
}

} // namespace

bool QelWriteStdShape(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    Points p;
    {
        AcDbPolyline* outline = nullptr;
        if (acdbOpenObject(outline, id, AcDb::kForRead) != Acad::eOk) {
            AfxMessageBox(L"Error getting array of vertices");
            return false;
        }
        QelLightweightVertices(*outline, p);
        outline->close();
    }
    QelMemberRecord tag;
    const int index = tag.Load(id) ? tag.partIndex : sectionByCount(p.size());
    // A tag may name a section that the outline hasn't the points for.
    if (p.size() < pointsNeeded(index)) return false;
    const AcGePoint3d& last = p[p.size() - 2];
    QelFrame frame;
    if (!QelFrameFromThreePoints(p[0], last, p[1], frame)) {
        acutPrintf(L"\n Warning: skipping degenerate object");
        return false;
    }
    // A tee stands on its stem: the origin is the foot of the stem, below the flange's corner.
    if (index == 1) frame.origin = frame.toWorld(AcGePoint3d(0.0, frame.toLocal(p[6]).y, 0.0));
    const AcGePoint3d& o = frame.origin;
    target->AddOrReplaceParam(QelParam::Create("sectionType", sectionName(index)));
    QelWriteFramePose(target, frame);
    double depth = 0, width = 0, flange = 0, web = 0;
    switch (index) {
    case 0:
        depth = p[5].distanceTo(o), width = p[11].distanceTo(o), flange = p[1].distanceTo(o);
        web = p[2].distanceTo(p[9]);
        break;
    case 1:
        depth = p[1].distanceTo(o), width = p[2].distanceTo(p[1]), flange = p[0].distanceTo(p[1]);
        web = p[4].distanceTo(p[7]);
        break;
    case 2:
        depth = p[1].distanceTo(o), width = p[7].distanceTo(o), flange = p[7].distanceTo(p[6]);
        web = width - p[5].distanceTo(p[6]);
        break;
    case 4:
        depth = p[1].distanceTo(o), width = p[2].distanceTo(p[1]), flange = p[3].distanceTo(p[2]);
        break;
    case 7:
        depth = p[1].distanceTo(o), width = p[2].distanceTo(p[1]), flange = tag.flangeThickness;
        break;
    default:
        depth = p[1].distanceTo(o), width = p[2].distanceTo(p[1]);
        break;
    }
    setLength(target, "depth", depth);
    setLength(target, "width", width);
    setLength(target, "flangeThickness", flange);
    if (index < 3 || index >= 7) setLength(target, "webThickness", web);
    return true;
}

bool QelWriteStdShapeExtrusion(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                               const AcDbObjectId& id) {
    QelMemberRecord tag;
    if (!tag.Load(id)) return false;
    QelFrame frame;
    if (memberFrame(tag, frame)) {
        double rotation[4];
        frame.rotation(rotation);
        QelWritePose(target, rotation, frame.origin);
    }
    target->AddOrReplaceParam(QelParam::Create("sectionType", sectionName(tag.partIndex)));
    const std::pair<const char*, double> sizes[] = {{"depth", tag.depth},
                                                    {"width", tag.width},
                                                    {"length", tag.length},
                                                    {"flangeThickness", tag.flangeThickness},
                                                    {"webThickness", tag.webThickness}};
    for (const auto& [name, value] : sizes)
        if (value > 0.0) setLength(target, name, value);
    return true;
}
