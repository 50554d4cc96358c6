#include "bulk/bulk_creators.h"

#include "bulk/contour_labels.h"
#include "bulk/param_view.h"
#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"

#include <arx/aced.h>

#include <algorithm>
#include <cmath>

namespace {

// The contour's row of the class table: code, group, key and extended data text.
const QelClassRow& contourClass() {
    return QelClassOf(QelCode::ContourObj);
}

// The lists of the object, checked against each other: plane p holds polylines planes[p] up
// to the next entry (the last up to the polyline count), polyline q the vertex pairs from
// starts[q] to the next entry less one (the last up to the last pair).
struct ContourInput {
    QelArrayView<int> planes, starts;
    QelArrayView<double> vertices;
    int startPlane = 0, minorCount = 0;
    double minorInterval = 0.0;
    AcGeMatrix3d translation, rotation;

    unsigned PlaneCount() const { return planes.count; }
    unsigned PairCount() const { return vertices.count / 2; }
    // Polylines [first, last) of plane p, clipped to the polylines there are.
    void PlaneRange(unsigned p, unsigned& first, unsigned& last) const {
        auto clip = [this](long long v) {
            return unsigned(std::clamp<long long>(v, 0, starts.count));
        };
        first = clip(planes[p]);
        last = p + 1 < planes.count ? clip(planes[p + 1]) : starts.count;
        if (last < first) last = first;
    }
    long long StopOf(unsigned q) const {
        return q + 1 < starts.count ? (long long)starts[q + 1] - 1 : (long long)PairCount() - 1;
    }
    double Elevation(unsigned p) const { return (startPlane + double(p)) * minorInterval; }
    // Whether plane p is labelled when only whole intervals are.
    bool IsMajor(unsigned p) const {
        return minorCount == 0 || (startPlane + static_cast<long long>(p)) % minorCount == 0;
    }
};

// The pairs start to stop as points at z 0, converted; only pairs that exist.
AcGePoint3dArray pairs(const ContourInput& in, long long start, long long stop) {
    AcGePoint3dArray points;
    for (long long i = std::max(start, 0LL); i <= stop && i < (long long)in.PairCount(); ++i)
        points.append(AcGePoint3d(QelToDrawing(in.vertices[unsigned(2 * i)]),
                                  QelToDrawing(in.vertices[unsigned(2 * i + 1)]), 0.0));
    return points;
}

void place(AcDbEntity* entity, const ContourInput& in) {
    entity->transformBy(in.translation);
    entity->transformBy(in.rotation);
    ApplyImportTransform(entity);
}

// The label settings under "velmoraGraphicsParam", each absence told in the log.
struct LabelStyle {
    int ctrl = 0;
    int unit = 1;
    double size = 0.0;
    unsigned char rgb[3] = {255, 255, 255};

    explicit LabelStyle(QelObject* object) {
        QelObject* graphics = nullptr;
        if (QelParam* param = QelParamOf(object, "velmoraGraphicsParam");
            param && param->GetType() == QelObjectType)
            param->GetValue(graphics);
        if (!QelReadInt(graphics, "elevationCtrl", ctrl))
            QelLogAppend(
                L"\nError reading Contour 'elevationCtrl', using default (elevationCtrl=0)");
        int fileUnit = 0;
        if (!QelReadInt(graphics, "elevationUnit", fileUnit))
            QelLogAppend(L"\nError reading Contour 'elevationUnit', using default");
        unit = QelContourLabelUnit(fileUnit > 16 ? 1 : fileUnit);
        QelParam* sizeParam = QelParamOf(graphics, "elevationSize");
        if (sizeParam && sizeParam->GetType() == QelDoubleType) {
            sizeParam->GetValue(size);
            if (!QelFiniteValues("elevationSize", &size, 1)) size = 0.0;
        } else
            QelLogAppend(L"\nError reading Contour 'elevationSize',");
        QelArrayView<unsigned char> bytes;
        int packed = 0;
        if (QelViewArray(graphics, "elevationColor", QelByteArrayType, bytes) && bytes.count >= 3) {
            for (unsigned i = 0; i < 3; ++i)
                rgb[i] = bytes[i];
        } else if (QelReadInt(graphics, "elevationColor", packed)) {
            for (int i = 0; i < 3; ++i)
                rgb[i] = (unsigned(packed) >> (8 * i)) & 0xFF;
        }
    }
};

void addLabels(QelObject* object, const ContourInput& in, AcDbGroup* group, unsigned objIndex) {
    QelArrayView<int> counts;
    QelArrayView<double> positions, directions;
    if (!QelViewArray(object, "elevationPosCounts", QelIntArrayType, counts) ||
        !QelViewArray(object, "elevationPositions", QelDoubleArrayType, positions))
        return;
    QelViewArray(object, "elevationVectors", QelDoubleArrayType, directions);
    const LabelStyle style(object);
    const double factor = QelToDrawing(1.0);
    const unsigned positionCount = positions.count / 2;
    unsigned next = 0; // the first position of the plane
    for (unsigned p = 0; p < in.PlaneCount() && p < counts.count; ++p) {
        const unsigned first = next;
        const long long count = std::max(counts[p], 0);
        next = unsigned(std::min<long long>(first + count, positionCount));
        if ((style.ctrl & 64) && !in.IsMajor(p)) continue;
        std::wstring text;
        const double metres = factor == 0.0 ? 0.0 : in.Elevation(p) / factor;
        if (!QelContourLabelText(metres, style.unit, text)) return;
        for (unsigned k = first; k < next; ++k) {
            const AcGePoint3d at(QelToDrawing(positions[2 * k]), QelToDrawing(positions[2 * k + 1]),
                                 in.Elevation(p));
            double dx = 1.0, dy = 0.0;
            if (2 * k + 1 < directions.count) {
                dx = directions[2 * k];
                dy = directions[2 * k + 1];
            }
            auto* label = new AcDbText();
            label->setDatabaseDefaults();
            label->setTextString(text.c_str());
            label->setPosition(at);
            label->setHeight(style.size * factor);
            label->setRotation(std::atan2(dy, dx));
            label->setVerticalMode(AcDb::kTextBase);
            label->setHorizontalMode(AcDb::kTextCenter);
            label->setAlignmentPoint(at);
            place(label, in);
            label->setColorIndex(
                AcCmEntityColor::lookUpACI(style.rgb[0], style.rgb[1], style.rgb[2]), true);
            if (AddToCurrentSpace(label) != Acad::eOk) {
                delete label;
                continue;
            }
            label->close();
            QelGroupAppend(group, label->objectId());
            QelMemberRecord record;
            record.memberType = contourClass().code;
            // Labels keep the dictionary key as their group's name, not the group's own.
            QelFillRecordOrigin(record, objIndex, nullptr, contourClass().groupKey);
            record.Store(label);
        }
    }
}

} // namespace

QelCreated CreateContour(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                         const CString* filePath) {
    ContourInput in;
    if (!QelViewArray(object, "planeStartIndices", QelIntArrayType, in.planes)) {
        QelLogAppend(L"Error reading ContourObj 'planeStartIndices'.");
        return QelCreated::Failed;
    }
    if (!QelViewArray(object, "polylineStartIndices", QelIntArrayType, in.starts)) {
        QelLogAppend(L"Error reading ContourObj 'polylineStartIndices'.");
        return QelCreated::Failed;
    }
    QelViewArray(object, "contourVertices", QelDoubleArrayType, in.vertices);
    QelReadInt(object, "startPlaneIdx", in.startPlane);
    QelReadInt(object, "numMinorIntervals", in.minorCount);
    double major = 0.0;
    GetDoubleParam(object, "majorInterval", major, true);
    // Without minor intervals the planes stand one whole interval apart.
    in.minorInterval = in.minorCount > 0 ? major / in.minorCount : major;
    if (in.minorCount < 0) in.minorCount = 0;
    AcGePoint3d origin;
    PoseMatrices(object, in.translation, in.rotation, origin);

    CString groupName;
    const QelClassRow& kind = contourClass();
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, groupName);
    acedSetStatusBarProgressMeter(L"Importing Contour object", 0, 100);
    const unsigned interval = std::max(1u, in.PlaneCount() / 100);
    const double half = std::floor(in.PlaneCount() * 0.5);
    const unsigned middle = half >= 0.0 && half <= 32767.0 ? unsigned(half) : 0;
    bool annotated = false;
    int meter = 0;
    AcDbObjectIdArray ids;
    for (unsigned p = 0; p < in.PlaneCount(); ++p) {
        unsigned first = 0, last = 0;
        in.PlaneRange(p, first, last);
        for (unsigned q = first; q < last; ++q) {
            const long long start = in.starts[q];
            long long stop = in.StopOf(q);
            if (stop == 0) {
                QelLogAppend(L"\nError: stopIdx in getPramVertices < 0.");
                QelLogAppend(L"\nResetting stopIdx to stopIdx = startIdx + 2");
                QelLogAppend(L"\nNote: Some polyLines may not be drawn.");
                AfxMessageBox(L"Error drawing contour obj. Some polyLines may not be drawn.");
                stop = start + 2;
            }
            const AcGePoint3dArray points = pairs(in, start, stop);
            if (points.isEmpty()) {
                QelLogAppend(L"Error reading ContourObj 'contourVertices'.");
                p = in.PlaneCount();
                break;
            }
            auto* line = new AcDb2dPolyline(AcDb::k2dSimplePoly, points, 0.0, false);
            line->setDatabaseDefaults();
            line->transformBy(AcGeMatrix3d::translation(AcGeVector3d(0.0, 0.0, in.Elevation(p))));
            place(line, in);
            ApplyColour(object, line);
            if (AddToCurrentSpace(line) != Acad::eOk) {
                QelLogAppend(L"Error adding Contour line to current dwg space.");
                delete line;
                continue;
            }
            line->close();
            ids.append(line->objectId());
            QelMemberRecord record;
            record.memberType = kind.code;
            record.partIndex = 0;
            QelFillRecordOrigin(record, objIndex, filePath, groupName);
            record.Store(line);
            AddXData(line, kind.xdata);
            if (!annotated && p == middle) {
                annotated = true;
                ImportAnnotations(object, AcGeMatrix3d::translation(points[0].asVector()),
                                  in.rotation, group);
            }
        }
        if ((p + 1) % interval == 0 && meter < 100) acedSetStatusBarProgressMeterPos(++meter);
    }
    if (group && !ids.isEmpty()) group->append(ids);
    addLabels(object, in, group, objIndex);
    QelCloseGroup(group);
    acedRestoreStatusBar();
    return QelCreated::Done;
}
