// BSplineCurve3d: a spline through fit points (with given end tangents, or drawn by the host's
// spline command), or one of control points, knots and weights.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/primitives.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"

#include <arx/aced.h>

#include <vector>

namespace {

// The host leaves a spline empty when it refuses its data: such a spline counts as not made
// (deleted, after the text of a spline that could not be allocated).
bool made(AcDbSpline* spline) {
    if (spline->numControlPoints() > 0) return true;
    delete spline;
    QelReportError(L"Could not allocate memory for new Spline.");
    return false;
}

void tagSpline(QelObject* object, AcDbEntity* spline, const AcGePoint3d& first, int partIndex,
               unsigned objIndex, const CString* filePath) {
    QelMemberRecord record;
    record.partIndex = partIndex;
    QelGroupTagAnnotate(object, spline, QelClassOf(QelCode::BSplineCurve3d), record, objIndex,
                        filePath, AcGeMatrix3d::translation(first.asVector()),
                        AcGeMatrix3d::kIdentity);
}

// Placed, coloured and appended; false after the failure's text.
bool appendSpline(QelObject* object, AcDbSpline* spline, const wchar_t* failure) {
    spline->setDatabaseDefaults();
    ApplyImportTransform(spline);
    ApplyColour(object, spline);
    if (AppendToModelSpace(spline) == Acad::eOk) return true;
    QelReportError(failure);
    return false;
}

// Appends one result buffer to the chain; false (and the chain released) when none was made.
bool add(resbuf*& head, resbuf*& tail, int type, const wchar_t* text,
         const AcGePoint3d* point = nullptr) {
    resbuf* rb = acutNewRb(type);
    if (!rb) {
        acutRelRb(head);
        head = nullptr;
        return false;
    }
    if (text) rb->resval.rstring = acutNewString(text);
    if (point) {
        rb->resval.rpoint[0] = point->x;
        rb->resval.rpoint[1] = point->y;
        rb->resval.rpoint[2] = point->z;
    }
    (head ? tail->rbnext : head) = rb;
    tail = rb;
    return true;
}

// The host's spline command through the points, closed when periodic: the last entity drawn,
// coloured and placed. False when the command's spline could not be had.
bool drawnSpline(QelObject* object, const AcGePoint3dArray& points, bool periodic,
                 AcDbEntity*& spline) {
    resbuf *head = nullptr, *tail = nullptr;
    if (!add(head, tail, RTSTR, L"_spline")) return false;
    for (int i = 0; i < points.length(); ++i)
        if (!add(head, tail, RT3DPOINT, nullptr, &points[i])) return false;
    // The empty answers end the points and accept the default tangents.
    const std::vector<const wchar_t*> answers = periodic
                                                    ? std::vector<const wchar_t*>{L"_Close", L""}
                                                    : std::vector<const wchar_t*>{L"", L"", L""};
    for (const wchar_t* answer : answers)
        if (!add(head, tail, RTSTR, answer)) return false;
    acedCmd(head);
    acutRelRb(head);
    ads_name last;
    if (acdbEntLast(last) != RTNORM) {
        QelLogAppend(L"\nError obtaining ent handle for BSpline curve.");
        return false;
    }
    AcDbObjectId id;
    if (acdbGetObjectId(id, last) != Acad::eOk ||
        acdbOpenAcDbEntity(spline, id, AcDb::kForWrite) != Acad::eOk)
        return false;
    ApplyColour(object, spline);
    ApplyImportTransform(spline);
    spline->close();
    return true;
}

void poleForm(QelObject* object, unsigned objIndex, const CString* filePath) {
    AcGePoint3dArray poles;
    if (!GetPoint3dArrayParam(object, "poles", poles, true)) {
        QelReportError(L"\nError getting control points.");
        return;
    }
    int order = 4;
    if (!QelReadInt(object, "order", order)) {
        QelReportError(L"Error getting BSpline curve order, setting to default 'order=4'.");
        order = 4;
    }
    bool periodic = true, rational = false;
    if (!QelReadBool(object, "periodic", periodic)) {
        QelReportError(L"Error getting periodic curve info, setting to default 'periodic=true'.");
        periodic = true;
    }
    if (!QelReadBool(object, "rational", rational)) {
        QelReportError(L"Error getting rational curve info, setting to default 'rational=false'.");
        rational = false;
    }
    AcGeDoubleArray weights, knots;
    if (!GetDoubleArrayParam(object, "weights", weights, false)) {
        QelReportError(L"\nError getting weights of Spline.");
        return;
    }
    if (!GetDoubleArrayParam(object, "knots", knots, false)) {
        QelReportError(L"\nError getting knots of Spline.");
        return;
    }
    // The file's order goes in as the degree and the closed flag follows periodic, so the host
    // takes only knots of poles + order + 1.
    auto* spline =
        new AcDbSpline(order, rational, periodic, periodic, poles, knots, weights, 0.0, 0.0);
    if (!made(spline)) return;
    if (!appendSpline(object, spline, L"\nError creating Spline.")) return;
    tagSpline(object, spline, poles[0], 0, objIndex, filePath);
}

} // namespace

QelCreated CreateBSplineCurve3d(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                                const CString* filePath) {
    AcGePoint3dArray points;
    if (!GetFitPointArrayParam(object, "fitPoints", points, true)) {
        QelLogAppend(L"\nfitPoints do not exist trying pole control points");
        // The pole form makes its spline, and the object still counts as failed.
        poleForm(object, objIndex, filePath);
        return QelCreated::Failed;
    }
    int order = 4;
    if (!QelReadInt(object, "order", order)) {
        QelLogAppend(L"\nError getting BSpline curve order, setting to default 'order=4'.");
        order = 4;
    }
    bool periodic = true;
    QelReadBool(object, "periodic", periodic);
    AcGePoint3d startVec, endVec;
    const bool tangents = GetPointParam(object, "startVec", startVec, false) &&
                          GetPointParam(object, "endVec", endVec, false);
    AcDbEntity* spline = nullptr;
    if (tangents) {
        auto* fitted = new AcDbSpline(points, startVec.asVector(), endVec.asVector(), order, 0.0);
        if (!made(fitted) || !appendSpline(object, fitted, L"Error creating Spline."))
            return QelCreated::Failed;
        spline = fitted;
    } else if (!drawnSpline(object, points, periodic, spline)) {
        return QelCreated::FailedReported;
    }
    tagSpline(object, spline, points.isEmpty() ? AcGePoint3d::kOrigin : points[0], 0, objIndex,
              filePath);
    return QelCreated::Done;
}
