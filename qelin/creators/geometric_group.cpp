// GeometricGroup: its members are read from the file again and run through the dispatcher, so
// that a group in a group makes its members too. The group itself is an empty anonymous group;
// the members find it by the serial they carry. A file can make the walk loop (a group listing
// itself or a group that lists it) or list objects that are not drawn (the structure of the
// file): each such member is reported once per read, counted and skipped.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/placement.h"
#include "creators/object_sets.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "import/class_table.h"
#include "import/read_qel_file.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <algorithm>
#include <set>
#include <strings.h>
#include <utility>
#include <vector>

namespace {

// Groups deeper than this are refused: each level holds the file open once more.
constexpr std::size_t kMaxDepth = 64;

// The groups being walked, outermost first, and the bad members reported in this read (group,
// member).
std::vector<unsigned> g_walking;
std::set<std::pair<unsigned, unsigned>> g_reported;

// Classes that make up the file's structure: a group never holds them.
bool isStructure(const char* className) {
    for (const QelClassRow& row : QelClassRows())
        if (row.className && ::strcasecmp(className, row.className) == 0)
            return row.code == QelCode::Layer || row.code == QelCode::LayerMgr ||
                   row.code == QelCode::ModelSpace || row.code == QelCode::Header;
    return false;
}

void badMember(unsigned group, unsigned member, const CString& text) {
    if (!g_reported.insert({group, member}).second) return;
    QelReportError(text);
    QelCountError();
}

// Walks the member at location unless it would loop or is not a drawing object.
void walkMember(QelJob& job, QelReader& reader, unsigned group, unsigned location,
                unsigned char acisMode) {
    CString text;
    if (std::find(g_walking.begin(), g_walking.end(), location) != g_walking.end()) {
        text.Format(L"\nGeometricGroup %u lists group %u, which holds it: member skipped.", group,
                    location);
        badMember(group, location, text);
        return;
    }
    QelObjectRef member(reader.ReadObject(location));
    if (!member) {
        text.Format(L"\nGeometricGroup %u lists object %u, which the file lacks: member skipped.",
                    group, location);
        badMember(group, location, text);
        return;
    }
    if (isStructure(member->GetName())) {
        text.Format(L"\nGeometricGroup %u lists object %u, a %s: member skipped.", group, location,
                    QelWideFromNarrow(member->GetName()));
        badMember(group, location, text);
        return;
    }
    DispatchObject(job, member.get(), nullptr, acisMode, location, &job.fileName);
}

// The objectList param, which may be present with no entries.
bool readObjectList(QelObject* object, QelArray<unsigned>& list) {
    if (!object->GetParam("objectList", 0)) return false;
    QelReadUnsignedArray(object, "objectList", list);
    return true;
}

} // namespace

void QelResetGroupWalk() {
    g_reported.clear();
}

QelCreated CreateGeometricGroup(QelObject* object, void*, int, unsigned char acisMode,
                                unsigned objIndex, const CString* filePath) {
    QelArray<unsigned> members;
    if (!readObjectList(object, members)) {
        QelReportError(L"Error reading Model Space 'objectList'.");
        return QelCreated::Failed;
    }
    if (g_walking.size() >= kMaxDepth) {
        CString text;
        text.Format(L"\nGeometricGroup %u lies deeper than %u groups: skipped.", objIndex,
                    unsigned(kMaxDepth));
        badMember(objIndex, objIndex, text);
        return QelCreated::FailedReported;
    }
    CDocData& doc = QelDocData();
    doc.importContext = 2;
    doc.maxGroupNumber += 1;

    QelJob job;
    job.asAcisSolids = acisMode;
    job.fileName = QelRunFileName(L"\nError processing GeometricGroup");
    job.lastOpenDir = job.fileName;
    job.logFilePath = QelLogFilePath();
    QelReader reader;
    QelOpenRunFile(reader, job.fileName);

    CString groupName;
    const QelClassRow& row = QelClassOf(QelCode::GeometricGroup);
    AcDbGroup* group = QelMakeObjectGroup(row.groupName, row.groupKey, groupName);
    QelLogWrite(L"\n            Processing Geometric Group objects...", job.logFilePath);
    g_walking.push_back(objIndex);
    for (unsigned i = 0; i < members.GetCount(); ++i) {
        try {
            walkMember(job, reader, objIndex, members[i], acisMode);
        } catch (const QelException& e) {
            const CString reason(QelWideFromNarrow(e.GetReason()));
            QelLogWrite(reason, job.logFilePath);
            AfxMessageBox(reason);
            QelCountError();
        } catch (...) {
            QelReportError(L"\nCaught unknown exception in Geometrical Group!");
            QelCountError();
        }
    }
    g_walking.pop_back();

    // The annotations stand where the first member stands.
    QelObjectRef first;
    try {
        if (members.GetCount() > 0) first.reset(reader.ReadObject(members[0]));
    } catch (...) {
        first.reset();
    }
    if (!first) {
        QelReportError(L"\nUnable to read qel file Header.");
    } else {
        // A first member that is part of the file's structure has no pose to lend.
        AcGeMatrix3d translation, rotation;
        if (!isStructure(first->GetName())) PoseMatrices(first.get(), translation, rotation);
        QelMemberRecord record;
        record.memberType = row.code;
        QelFillRecordOrigin(record, objIndex, filePath, groupName);
        ImportAnnotations(object, translation, rotation, group, record);
        QelLogWrite(L"\n            End Processing Geometric Group.\n", job.logFilePath);
    }
    QelCloseGroup(group);
    reader.Close();
    doc.importContext = 0;
    return first ? QelCreated::Done : QelCreated::FailedReported;
}
