// The first step: what the tag says. A tag of one entity answers at once; the entities drawn for
// one valve, flange, tee, mesh or contour give one object between them.
#include "export/classify_steps.h"
#include "export/group_members.h"
#include "export/object_types.h"
#include "export/qel_out_object.h"
#include "foundation/log_file.h"
#include "records/member_record.h"
#include "shell/doc_data.h"

namespace {

using namespace QelClassify;

struct Members {
    AcDbObjectIdArray ids;
    int count = 0;
};

Members membersOf(const AcDbObjectId& id) {
    Members m;
    m.count = groupMembers(id, m.ids);
    return m;
}

// The fitting leaves once, from the first member that isn't an annotation.
int firstSolidMember(const Members& m, const AcDbObjectId& id, int answer) {
    for (int i = 0; i < m.count; ++i)
        if (!QelIsText(m.ids[i])) return m.ids[i] == id ? answer : NoObject;
    return NoObject;
}

// An exploded fitting: each piece leaves as the primitive its role in the fitting was.
int valvePiece(int role) {
    switch (role) {
    case 0:
    case 1:
        return QelCode::Cone;
    case 2:
        return QelCode::Torus;
    case 3:
        return QelCode::Cylinder;
    default:
        return GoOn;
    }
}

int flangePiece(int role) {
    if (role == 0) return QelCode::Cylinder;
    if (role == 1) return QelCode::Cone;
    return GoOn;
}

// A mesh split over several host meshes leaves once from its reference, or as one mesh per
// host mesh without it; the last one carries the annotations.
int meshMember(QelOutObject& out, const Members& m, const AcDbObjectId& id) {
    if (m.count == 0 || QelIsText(id)) return NoObject;
    int solids = 0, last = -1;
    for (int i = 0; i < m.count; ++i)
        if (!QelIsText(m.ids[i])) {
            ++solids;
            last = i;
        }
    const bool isLast = last >= 0 && m.ids[last] == id;
    if (out.processMethod == 1) return isLast ? QelCode::TriMesh : NoObject;
    if (isLast) {
        QelDocData().meshAnnotationsPending = 1;
        if (solids >= 2) {
            CString line;
            line.Format(L"\n The original imported mesh was split into %d different", solids);
            QelLogAppend(line);
            QelLogAppend(L"\n mesh objects, as a mesh object in AutoCAD is limited to 32k\n");
        }
    }
    return QelCode::TriMesh;
}

} // namespace

int QelClassify::byTag(QelOutObject& out, const AcDbObjectId& id, const QelMemberRecord* tag) {
    if (!tag) return GoOn;
    const int code = tag->memberType;
    const QelObjectTypeRow* row = QelTypeRow(code);
    if (!row || code == QelCode::Pointset) return GoOn;
    if (row->tagRule == QelTagRule::TagDecides) return code;
    if (row->tagRule != QelTagRule::Grouped) return GoOn;

    const Members m = membersOf(id);
    switch (code) {
    case QelCode::Valve:
        return m.count ? firstSolidMember(m, id, code) : valvePiece(tag->partIndex);
    case QelCode::PipeFlange:
        return m.count ? firstSolidMember(m, id, code) : flangePiece(tag->partIndex);
    case QelCode::PipeTee:
        return m.count ? firstSolidMember(m, id, code) : QelCode::Cylinder;
    case QelCode::ContourObj:
        return m.count ? firstSolidMember(m, id, code) : GoOn;
    case QelCode::TriMesh:
        return meshMember(out, m, id);
    default:
        return GoOn;
    }
}
