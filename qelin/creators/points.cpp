// Vertex3d is one point drawn by the host's own command; Pointset a cloud of single points.
#include "creators/points.h"

#include "bulk/param_view.h"
#include "bulk/tv_mesh.h"
#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/progress_dlg.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <cmath>
#include <cwctype>
#include <memory>
#include <vector>

namespace {

// The text on a cloud's first point: the cloud's row of the class table has it.
const ACHAR* pointMarker() {
    return QelClassOf(QelCode::Pointset).xdata;
}

// The entity last appended, or null when the drawing has none.
AcDbObjectId lastEntity() {
    ads_name name = {0, 0};
    AcDbObjectId id;
    if (acdbEntLast(name) != RTNORM || acdbGetObjectId(id, name) != Acad::eOk) return {};
    return id;
}

// The colour index of an intensity, computed in single precision as the cloud's colours always
// were.
Adesk::UInt8 intensityColour(const TvMesh& ramp, short value, float minMapped, float range) {
    const float position =
        ((float(value) + 32768.0f) / 65535.0f - minMapped) * 1023.0f * (1.0f / range);
    return ramp.RampColour(std::trunc(position));
}

// The colours of a cloud's intensities: looked up in a table of every intensity when the cloud
// has more points than there are intensities, else computed point by point.
class IntensityColours {
public:
    IntensityColours(const TvMesh& ramp, float minMapped, float range, unsigned points)
        : m_ramp(ramp), m_minMapped(minMapped), m_range(range) {
        if (points < kIntensities) return;
        m_table.resize(kIntensities);
        for (unsigned i = 0; i < kIntensities; ++i)
            m_table[i] = intensityColour(ramp, short(int(i) - 32768), minMapped, range);
    }
    Adesk::UInt8 operator()(short value) const {
        return m_table.empty() ? intensityColour(m_ramp, value, m_minMapped, m_range)
                               : m_table[unsigned(int(value) + 32768)];
    }

private:
    static constexpr unsigned kIntensities = 65536;
    const TvMesh& m_ramp;
    float m_minMapped, m_range;
    std::vector<Adesk::UInt8> m_table;
};

// The run's progress dialog, stepped once per hundredth of the points.
class CloudProgress {
public:
    explicit CloudProgress(unsigned points) : m_interval(points / 100 > 0 ? points / 100 : 1) {
        m_dialog.Create();
        m_dialog.SetRange(0, 100);
        m_dialog.SetPos(100 - QelDocData().objectsLeft);
        m_dialog.SetHeading(L"Reading Velmora object file....");
    }
    ~CloudProgress() { m_dialog.DestroyWindow(); }
    // False once the user cancelled.
    bool Point() {
        if (++m_count < m_interval) return true;
        m_count = 0;
        m_dialog.StepIt();
        return !m_dialog.CheckCancelButton();
    }

private:
    CProgressDlg m_dialog;
    unsigned m_interval;
    unsigned m_count = 0;
};

} // namespace

QelThinning QelThinningFor(unsigned n) {
    // Above 5000000 floats the intensities advance by 5 whatever the points do: their colours
    // drift from their points, as clouds have always been drawn.
    if (n <= 500000) return {3, 1, n};
    if (n <= 2000000) return {6, 2, n};
    if (n <= 5000000) return {12, 4, n};
    if (n <= 6500000) return {18, 5, n};
    return {24, 5, 6500000};
}

bool IsQelPointEntity(const AcDbEntity* entity) {
    resbuf* chain = entity ? entity->xData(QEL_XDATA_APP) : nullptr;
    bool found = false;
    for (resbuf* rb = chain; rb && !found; rb = rb->rbnext)
        found = rb->restype == 1000 && rb->resval.rstring &&
                ::wcscasecmp(rb->resval.rstring, pointMarker()) == 0;
    acutRelRb(chain);
    return found;
}

QelCreated CreateVertex3d(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                          const CString* filePath) {
    AcGePoint3d position;
    if (!GetPointParam(object, "position", position, true)) {
        QelReportError(L"\nError getting vertex point.");
        return QelCreated::Failed;
    }
    ResetUcs();
    const AcDbObjectId before = lastEntity();
    ads_point at = {position.x, position.y, position.z};
    acedCommand(RTSTR, L"_point", RT3DPOINT, at, RTNONE);
    // A command that drew nothing leaves the last entity as it was: nothing more to do then.
    const AcDbObjectId id = lastEntity();
    if (id.isNull() || id == before) return QelCreated::Done;
    AcDbEntity* point = nullptr;
    if (acdbOpenAcDbEntity(point, id, AcDb::kForWrite) != Acad::eOk) return QelCreated::Done;
    ApplyImportTransform(point);
    point->close();

    QelMemberRecord record;
    const QelClassRow& kind = QelClassOf(QelCode::Vertex3d);
    record.memberType = kind.code;
    AcDbGroup* group =
        QelGroupAndTag(point, kind.groupName, kind.groupKey, record, objIndex, filePath, nullptr);
    ImportAnnotations(object, AcGeMatrix3d::translation(position.asVector()),
                      AcGeMatrix3d::rotation(0.0, AcGeVector3d::kZAxis, position), group);
    QelCloseGroup(group);
    return QelCreated::Done;
}

QelCreated CreatePointset(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                          const CString* filePath) {
    if (QelDocData().importPoints != 1) return QelCreated::Done;
    ResetUcs();
    if (ReadPoints(object, "points", true, objIndex, filePath) ||
        ReadPoints(object, "pointList", true, objIndex, filePath))
        return QelCreated::Done;
    QelReportError(L"\nError getting pointList for Pointset.");
    return QelCreated::Failed;
}

bool ReadPoints(QelObject* object, const char* name, bool convert, unsigned objIndex,
                const CString* filePath) {
    QelArrayView<float> floats;
    if (!QelViewArray(object, name, QelFloatArrayType, floats)) return false;

    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    if (!space) {
        QelLogAppend(L"\nError opening BlockTableRecord for write");
        return true;
    }
    // The pose and the import transform, once for the whole cloud.
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    const AcGeMatrix3d placement = QelImportTransform() * rotation * translation;
    const bool moves = !placement.isEqualTo(AcGeMatrix3d::kIdentity);
    // Every unit row multiplies by one factor: found once, not per coordinate.
    const double toDrawing = QelToDrawing(1.0);
    auto length = [convert, toDrawing](float value) {
        return convert ? value * toDrawing : double(value);
    };

    const TvMesh ramp;
    float minMapped = QelFloatOrZero(object, "minMappedValue");
    float maxMapped = QelFloatOrZero(object, "maxMappedValue");
    QelArrayView<short> intensities;
    const bool coloured =
        QelViewArray(object, "intensities", "intensityList", QelShortArrayType, intensities);
    TvMesh::ResolveIntensityRange(QelFloatOrZero(object, "minIntensity"),
                                  QelFloatOrZero(object, "maxIntensity"), intensities.data,
                                  intensities.count, minMapped, maxMapped);
    float range = maxMapped - minMapped;
    if (range == 0.0f) range = 1.0f;

    const QelThinning thin = QelThinningFor(floats.count);
    const unsigned n = std::min(thin.limit, floats.count);
    CloudProgress progress(n / thin.step);
    const IntensityColours colours(ramp, minMapped, range, coloured ? n / thin.step : 0);

    CString groupName;
    const QelClassRow& kind = QelClassOf(QelCode::Pointset);
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, groupName);
    QelMemberRecord record;
    record.memberType = kind.code;
    QelFillRecordOrigin(record, objIndex, filePath, groupName);
    // Every point carries the same record: its chain is built and packed once, and shared.
    std::unique_ptr<resbuf, int (*)(resbuf*)> chain(QelMemberRecordChain(record), acutRelRb);
    const QelSharedXrecord tag(QEL_MEMBER_RECORD_KEY, chain.get());

    AcDbObjectIdArray ids;
    unsigned intensity = 0;
    for (unsigned i = 0; i + 2 < n; i += thin.step) {
        std::unique_ptr<AcDbPoint> point(new (std::nothrow) AcDbPoint());
        if (!point) {
            QelReportError(L"\nCould not allocate memory for new point in Pointset.");
            QelCloseGroup(group);
            space->close();
            return false;
        }
        if (coloured && intensity < intensities.count)
            point->setColorIndex(colours(intensities[intensity]), true);
        intensity += thin.intensityStride;
        point->setPosition(
            AcGePoint3d(length(floats[i]), length(floats[i + 1]), length(floats[i + 2])));
        if (moves) point->transformBy(placement);
        if (space->appendAcDbEntity(point.get()) != Acad::eOk) {
            space->close();
            QelCloseGroup(group);
            QelReportError(L"\nCould not append point object to ACAD Database.");
            return true;
        }
        AcDbPoint* added = point.release();
        if (chain) tag.Apply(added);
        added->close();
        if (!added->objectId().isNull()) ids.append(added->objectId());
        if (i == 0) AddXData(added, kind.xdata);
        if (!progress.Point()) break;
    }
    if (group) {
        if (!ids.isEmpty()) group->append(ids);
        group->close();
    }
    space->close();
    return true;
}
