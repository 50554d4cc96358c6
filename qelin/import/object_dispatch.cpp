#include "import/object_dispatch.h"

#include "creators/fittings.h"
#include "creators/primitives.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/state_guards.h"
#include "foundation/string_ring.h"
#include "import/read_qel_file.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <bitset>
#include <cstring>
#include <string>
#include <strings.h>

namespace {

constexpr QelCreator None = QelCreateNothing;
constexpr QelCreator Later = QelCreatorNotBuilt;

std::bitset<QelObjectNameRowCount> g_mentioned;

// The message of an unknown class has a wide format of 16-bit characters and passes the narrow
// name as it is, so the user sees the name's bytes taken two by two as one character each.
std::wstring NarrowAsWide(const char* name) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(name);
    const std::size_t count = std::strlen(name);
    std::wstring garbled;
    for (std::size_t i = 0; i < count; i += 2) {
        const wchar_t unit = wchar_t(bytes[i] | (i + 1 < count ? bytes[i + 1] << 8 : 0));
        if (unit >= 0xD800 && unit < 0xE000) break; // half of a pair: the name ends here
        garbled += unit;
    }
    return garbled;
}

} // namespace

QelObjectNameRow QelObjectNameTable[QelObjectNameRowCount] = {
    {"Line3d", CreateLine3d, 0},                 // 0
    {"CircularArc3d", CreateCircularArc3d, 0},   // 1
    {"EllipticArc3d", CreateEllipticArc3d, 0},   // 2
    {"Polyline3d", CreatePolyline3d, 0},         // 3
    {"StdShape", Later, 0},                      // 4
    {"BSplineCurve3d", CreateBSplineCurve3d, 0}, // 5
    {"PlanarPatch", Later, 0},                   // 6
    {"PlanarPolylineExtrusion", Later, 0},       // 7
    {"StdShapeExtrusion", Later, 0},             // 8
    {"Cylinder", CreateCylinder, 0},             // 9
    {"Cone", CreateCone, 0},                     // 10
    {"Reducer", Later, 0},                       // 11
    {"Sphere", CreateSphere, 0},                 // 12
    {"Torus", CreateTorus, 0},                   // 13
    {"Elbow", Later, 0},                         // 14
    {"Valve", CreateValve, 0},                   // 15
    {"RectangularBox", CreateRectangularBox, 0}, // 16
    {"Flange", CreateFlange, 0},                 // 17
    {"Tee", CreateTee, 0},                       // 18
    {"Vertex3d", Later, 0},                      // 19
    {"GeometricGroup", Later, 0},                // 20
    {"ExclusionVolume", Later, 0},               // 21
    {"Pointset", Later, 0},                      // 22
    {"TriMesh", Later, 0},                       // 23
    {"ContourObj", Later, 0},                    // 24
    {"Layer", None, 0},                          // 25
    {"LayerMgr", None, 0},                       // 26
    {"ModelSpace", None, 0},                     // 27
    {"Header", None, 0},                         // 28
    {"ReducingElbow", Later, 0},                 // 29
    {"PipeBranch", None, 0},                     // 30
};

int QelCreateNothing(QelObject*, void*, int, unsigned char, unsigned, const CString*) {
    return 0;
}

int QelCreatorNotBuilt(QelObject* object, void*, int, unsigned char, unsigned, const CString*) {
    for (int row = 0; row < QelObjectNameRowCount; ++row) {
        if (::strcasecmp(QelObjectNameTable[row].className, object->GetName()) != 0) continue;
        if (!g_mentioned.test(row))
            acutPrintf(L"\n %hs objects are not imported in this build: skipped.\n",
                       QelObjectNameTable[row].className);
        g_mentioned.set(row);
        break;
    }
    return 0;
}

void QelResetCreatorNotices() {
    g_mentioned.reset();
}

bool QelInObject::Lookup(QelJob& job, const char* className) {
    rowCount = QelObjectNameRowCount;
    for (rowIndex = 0; rowIndex < rowCount; ++rowIndex)
        if (::strcasecmp(QelObjectNameTable[rowIndex].className, className) == 0) {
            job.typeIndex = unsigned(rowIndex);
            found = 1;
            return true;
        }
    return false;
}

void DispatchObject(QelJob& job, QelObject* object, void* parent, unsigned char asAcisSolids,
                    unsigned reference, const CString* fileName) {
    QelUcsWorld();
    QelInObject in;
    in.parent = parent;
    const char* name = object->GetName();
    if (!in.Lookup(job, name)) {
        acutPrintf(L"\n Skipping unrecognized object: %s\n", NarrowAsWide(name).c_str());
        return;
    }
    const CDocData& doc = QelDocData();
    if (doc.suppressHiddenClasses == 1)
        for (unsigned i = 0; i < doc.hiddenClasses.GetCount(); ++i)
            if (doc.hiddenClasses[i] == job.typeIndex) return;
    const int row = int(job.typeIndex);
    if (row >= 0 && row < in.rowCount) {
        const QelObjectNameRow& entry = QelObjectNameTable[row];
        in.result =
            entry.creator(object, in.parent, entry.argument, asAcisSolids, reference, fileName);
        in.found = in.result == 0;
    }
    if (in.result != 0) {
        QelReportErrorNoLog(L"\nReturned Error Processing Object!");
        QelCountError();
        QelLogWrite(L"\n      Returned Error Processing Object!\n", job.logFilePath);
    }
}
