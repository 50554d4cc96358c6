#include "export/exclusion_volume_export.h"

#include "export/entity_dispatch.h"
#include "export/qel_out_object.h"
#include "foundation/geometry_helpers.h"
#include "foundation/log_file.h"
#include "foundation/string_ring.h"
#include "shell/doc_data.h"
#include "writers/box_reading.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"

#include <arx/aced.h>
#include <arx/dbsol3d.h>

#include <cstring>
#include <map>
#include <set>
#include <vector>

namespace {

bool holdsObjects(const char* className) {
    return className && (std::strcmp(className, "ExclusionVolume") == 0 ||
                         std::strcmp(className, "GeometricGroup") == 0);
}

void setObjectList(QelObject* object, const std::vector<unsigned>& list) {
    object->AddOrReplaceParam(
        QelParam::Create("objectList", list.data(), static_cast<unsigned>(list.size())));
}

// Deeper than any model nests its groups; a file that goes on is damaged, and following it would
// use up the stack.
constexpr std::size_t kDeepestTree = 1000;

// What one copy of a reference tree carries along: the numbers on the way from the root to the
// object in hand (a list leading back to one of them would be copied without end), and what each
// object copied so far was written as (an object listed twice is written once, so lists that
// share their members don't multiply the copies).
struct TreeCopy {
    QelReader& reader;
    QelWriter& writer;
    std::set<unsigned> onPath;
    std::map<unsigned, int> written;
};

int copyTree(QelObject* object, TreeCopy& copy) {
    if (!holdsObjects(object->GetName())) {
        QelWriteCounted(copy.writer, object);
        return QelDocData().lastObjectRef;
    }
    QelParam* listed = object->GetParam("objectList", 0);
    if (!listed) return -1;
    unsigned* numbers = nullptr;
    unsigned count = 0;
    try {
        listed->GetValue(numbers, count, true);
    } catch (const QelException&) {
        return -1; // a list of another type is no list of objects
    }
    const std::vector<unsigned> children(numbers, numbers + (numbers ? count : 0));
    delete[] numbers;
    std::vector<unsigned> copied;
    for (const unsigned number : children) {
        if (const auto done = copy.written.find(number); done != copy.written.end()) {
            copied.push_back(static_cast<unsigned>(done->second));
            continue;
        }
        if (copy.onPath.size() >= kDeepestTree) {
            const wchar_t* text =
                L"\n Object lists nested too deep in the reference tree: left out.";
            acutPrintf(L"%s", text);
            QelLogAppend(text);
            break;
        }
        if (!copy.onPath.insert(number).second) {
            QelLogAppend(L"\n Object list leads back to an object being copied: left out.");
            continue;
        }
        QelObject* child = nullptr;
        try {
            child = copy.reader.ReadObject(number);
        } catch (const QelException& e) {
            QelLogAppend(CString(L"\n Error reading object of the reference tree: ") +
                         QelWideFromNarrow(e.GetReason()));
        }
        if (child) {
            const int written = copyTree(child, copy);
            if (written >= 0) {
                copied.push_back(static_cast<unsigned>(written));
                copy.written.emplace(number, written);
            }
            child->UnRef();
        }
        copy.onPath.erase(number);
    }
    setObjectList(object, copied);
    QelWriteCounted(copy.writer, object);
    return QelDocData().lastObjectRef;
}

} // namespace

bool writeExclusionVolume(const AcGeMatrix3d&, QelObject* object, QelWriter& writer,
                          const AcDbObjectId& id, bool fromReference, QelOutObject& out) {
    AcDb3dSolid* solid = nullptr;
    if (acdbOpenObject(solid, id, AcDb::kForRead) == Acad::eOk) {
        QelSolidMeasure measure;
        QelMeasureSolid(*solid, measure);
        if (measure.hasMass) {
            // What the reading finds is taken even when it isn't a box in every respect.
            QelBoxReading box;
            QelReadBoxFromRegions(*solid, box);
            AcGeVector3d a = box.axes[0], b = box.axes[1];
            a.normalize(AcGeContext::gTol);
            b.normalize(AcGeContext::gTol);
            double translation[3], rotation[4];
            QelPoseFromFrame(measure.centroid, a, b, translation, rotation);
            QelWriteWholePose(object, rotation, measure.centroid);
            double thickness[3];
            for (int i = 0; i < 3; ++i)
                thickness[i] = QelLengthOut(box.lengths[i]);
            object->AddOrReplaceParam(QelParam::Create("thickness", thickness, 3));
        }
        solid->close();
    }
    if (!fromReference) {
        setObjectList(object, {});
        return false;
    }
    // A volume whose list is missing in the reference is written by the caller, with none.
    TreeCopy copy{out.reader, writer, {}, {}};
    if (copyTree(object, copy) >= 0) return true;
    setObjectList(object, {});
    return false;
}
