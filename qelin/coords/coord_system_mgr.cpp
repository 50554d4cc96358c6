#include "coords/coord_system_mgr.h"

#include "foundation/document_units.h"
#include "foundation/log_file.h"
#include "foundation/state_guards.h"
#include "foundation/string_ring.h"
#include "objectfile/param_read.h"
#include "shell/doc_data.h"

#include <arx/aced.h>
#include <arx/dbelipse.h>
#include <arx/gemat3d.h>

#include <algorithm>
#include <memory>

namespace {

const win::DialogResource coordTemplate({
    CCoordSystemMgr::IDD,
    L"Select World Coordinate System",
    186,
    85,
    L"MS Sans Serif",
    8,
    {
        {win::ControlKind::Static, IDC_STATIC, L"Selected coordinate system will be mapped to WCS.",
         5, 5, 174, 8},
        {win::ControlKind::ListBox, CCoordSystemMgr::IDC_SYSTEMS, L"", 5, 15, 117, 64, 0,
         L"Coordinate system", L"system"},
        {win::ControlKind::PushButton, IDOK, L"OK", 130, 15, 50, 14, BS_DEFPUSHBUTTON},
        {win::ControlKind::PushButton, IDCANCEL, L"Cancel", 130, 35, 50, 14},
    },
});

QelObject* nestedObject(QelObject* object, const char* name) {
    QelParam* param = object ? object->GetParam(name, 0) : nullptr;
    if (!param || param->GetType() != QelObjectType) return nullptr;
    QelObject* nested = nullptr;
    param->GetValue(nested);
    return nested;
}

double toDrawing(double metres) {
    double out = metres;
    QelMetresToDrawing(metres, &out);
    return out;
}

// Up to `most` values of a double array into out, all but a fourth one converted to drawing
// units. False, with out untouched, when the param is missing or not a double array.
bool readConverted(QelObject* object, const char* name, double* out, unsigned most) {
    QelParam* param = object ? object->GetParam(name, 0) : nullptr;
    if (!param || param->GetType() != QelDoubleArrayType) return false;
    double* values = nullptr;
    unsigned count = 0;
    param->GetValue(values, count, false);
    for (unsigned i = 0; i < count && i < most; ++i)
        out[i] = i == 3 ? values[i] : toDrawing(values[i]);
    return true;
}

void readTransformation(QelObject* object, CoordSystemEntry& entry) {
    readConverted(object, "translation", entry.translation, 3);
    readConverted(object, "rotation", entry.rotation, 4);
}

bool sameSystem(const CoordSystemEntry& a, const CoordSystemEntry& b) {
    return std::equal(a.translation, a.translation + 3, b.translation) &&
           std::equal(a.rotation, a.rotation + 4, b.rotation);
}

void copyPoint(const AcGePoint3d& p, double out[3]) {
    out[0] = p.x;
    out[1] = p.y;
    out[2] = p.z;
}

void copyVector(const AcGeVector3d& v, double out[3]) {
    out[0] = v.x;
    out[1] = v.y;
    out[2] = v.z;
}

void ucsToFrame(const double origin[3], const double xDirection[3], const double yDirection[3]) {
    const ads_point zero = {0.0, 0.0, 0.0};
    QelUcsWorld();
    QelUcsOrigin(origin);
    acedCommand(RTSTR, L"_UCS", RTSTR, L"_3P", RT3DPOINT, zero, RT3DPOINT, xDirection, RT3DPOINT,
                yDirection, RTNONE);
}

} // namespace

BEGIN_MESSAGE_MAP(CCoordSystemMgr, CDialog)
ON_BN_CLICKED(IDOK, &CCoordSystemMgr::OnSelect)
ON_BN_CLICKED(IDCANCEL, &CCoordSystemMgr::OnCancelChoice)
END_MESSAGE_MAP()

CCoordSystemMgr::CCoordSystemMgr() : CDialog(IDD) {}

CCoordSystemMgr::~CCoordSystemMgr() {
    delete entries;
}

void CCoordSystemMgr::DoDataExchange(CDataExchange* dx) {
    CDialog::DoDataExchange(dx);
    DDX_Control(dx, IDC_SYSTEMS, list);
}

BOOL CCoordSystemMgr::OnInitDialog() {
    CDialog::OnInitDialog();
    std::copy_n(CoordSystemEntry().rotation, 4, rotation);
    std::fill_n(translation, 3, 0.0);
    for (const CoordSystemEntry& entry : *entries)
        list.AddString(entry.name);
    list.SetCurSel(selected);
    return TRUE;
}

void CCoordSystemMgr::OnSelect() {
    selected = list.GetCurSel();
    if (selected < 0 || selected >= int(entries->size())) return; // nothing chosen: stay open
    const CoordSystemEntry& entry = (*entries)[std::size_t(selected)];
    QelLogAppend(L"\n User selected coordinate system : ");
    QelLogAppend(entry.name);
    CDocData& doc = QelDocData();
    std::copy_n(entry.rotation, 4, doc.selectedRotation);
    std::copy_n(entry.translation, 3, doc.selectedTranslation);
    QelObjectRef coordSysMgr(reader ? reader->ReadObject("CoordSysMgr", 0) : nullptr);
    if (coordSysMgr) loadSavedCoordinateSystems(coordSysMgr.get());
    EndDialog(1);
}

void CCoordSystemMgr::OnCancelChoice() {
    EndDialog(2);
}

int CCoordSystemMgr::selectCoordinateSystem(QelReader* fileReader, double translationOut[3],
                                            double rotationOut[4]) {
    delete entries;
    entries = new std::vector<CoordSystemEntry>;
    QelLogAppend(L"\n Loading User Selected Coordinate System.");
    reader = fileReader;
    QelUcsWorld();

    CoordSystemEntry current;
    QelObjectRef view(reader ? reader->ReadObject("ModelSpaceView", 0) : nullptr);
    if (view) {
        readTransformation(nestedObject(view.get(), "currCoordSys"), current);
        QelObjectRef coordSysMgr(reader->ReadObject("CoordSysMgr", 0));
        if (coordSysMgr) {
            QelLogAppend(L"\n Loading Saved Coordinate Systems Into AutoCAD.");
            QelObject* list = nestedObject(coordSysMgr.get(), "coordSysList");
            const unsigned count = list ? list->GetParamCount() : 0;
            for (unsigned i = 0; i < count; ++i) {
                QelParam* param = list->GetParam(i);
                if (!param || param->GetType() != QelObjectType) break;
                QelObject* system = nullptr;
                param->GetValue(system);
                CoordSystemEntry entry;
                readTransformation(system, entry);
                entry.name = QelWideFromNarrow(param->GetName());
                entries->push_back(entry);
            }
        }
    }
    CoordSystemEntry fileDefault;
    {
        QelObjectRef modelSpace(reader ? reader->ReadObject("ModelSpace", 0) : nullptr);
        if (QelObject* defCoordSys = nestedObject(modelSpace.get(), "defCoordSys"))
            readTransformation(defCoordSys, fileDefault);
    }
    fileDefault.name = L"<Default>";
    entries->insert(entries->begin(), fileDefault);
    CoordSystemEntry none;
    none.name = L"<None>";
    entries->insert(entries->begin(), none);

    int currentIndex = -1;
    for (std::size_t i = 0; i < entries->size(); ++i)
        if (sameSystem((*entries)[i], current)) {
            (*entries)[i].name += L" (current)";
            currentIndex = int(i);
        }
    if (currentIndex < 0) {
        current.name = L"<Unsaved>";
        entries->push_back(current);
        currentIndex = int(entries->size()) - 1;
    }
    selected = currentIndex;

    const CoordSystemEntry identity;
    const bool matters =
        std::any_of(entries->begin(), entries->end(),
                    [&](const CoordSystemEntry& e) { return !sameSystem(e, identity); });
    if (matters && DoModal() == 2) return 2;

    const CoordSystemEntry& chosen = (*entries)[std::size_t(selected)];
    std::copy_n(chosen.translation, 3, translationOut);
    std::copy_n(chosen.rotation, 4, rotationOut);
    return 1;
}

void CCoordSystemMgr::loadSavedCoordinateSystems(QelObject* coordSysMgr) {
    QelLogAppend(L"\n Loading Saved Coordinate Systems Into AutoCAD.");
    QelObject* systems = nestedObject(coordSysMgr, "coordSysList");
    const unsigned count = systems ? systems->GetParamCount() : 0;
    for (unsigned i = 0; i < count; ++i) {
        QelParam* param = systems->GetParam(i);
        QelUcsWorld();
        if (!param || param->GetType() != QelObjectType) return;
        QelObject* system = nullptr;
        param->GetValue(system);
        double t[3] = {0.0, 0.0, 0.0}, r[4] = {0.0, 0.0, 0.0, 0.0};
        readConverted(system, "translation", t, 3);
        readConverted(system, "rotation", r, 4);
        double origin[3], xDirection[3], yDirection[3];
        QelFrameFromTransformation(t, r, origin, xDirection, yDirection);
        ucsToFrame(origin, xDirection, yDirection);
        const wchar_t* name = QelWideFromNarrow(param->GetName());
        const CString kept(name);
        acedCommand(RTSTR, L"_UCS", RTSTR, L"_D", RTSTR, kept.GetString(), RTNONE);
        acedCommand(RTSTR, L"_UCS", RTSTR, L"_S", RTSTR, kept.GetString(), RTNONE);
    }
}

void CCoordSystemMgr::restoreViewCoordinateSystem(QelReader* fileReader) {
    reader = fileReader;
    QelObjectRef view(reader ? reader->ReadObject("ModelSpaceView", 0) : nullptr);
    if (!view) return;
    QelObject* currCoordSys = nestedObject(view.get(), "currCoordSys");
    double r[4] = {0.0, 0.0, 1.0, 0.0}, t[3] = {0.0, 0.0, 0.0};
    readConverted(currCoordSys, "rotation", r, 4);
    readConverted(currCoordSys, "translation", t, 3);
    double origin[3], xDirection[3], yDirection[3];
    QelFrameFromTransformation(t, r, origin, xDirection, yDirection);
    ucsToFrame(origin, xDirection, yDirection);
}

void CCoordSystemMgr::mapSelectedToWorld(AcDbEntity* entity) {
    const CDocData& doc = QelDocData();
    const AcGePoint3d from(doc.selectedTranslation[0], doc.selectedTranslation[1],
                           doc.selectedTranslation[2]);
    AcGeMatrix3d move;
    move.setToAlignCoordSys(from, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis, AcGeVector3d::kZAxis,
                            AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis,
                            AcGeVector3d::kZAxis);
    entity->transformBy(move);
    const double* r = doc.selectedRotation;
    AcGeMatrix3d turn;
    turn.setToRotation(-r[3], AcGeVector3d(r[0], r[1], r[2]), AcGePoint3d::kOrigin);
    entity->transformBy(turn);
}

void QelFrameFromTransformation(const double translation[3], const double rotation[4],
                                double origin[3], double xDirection[3], double yDirection[3]) {
    const AcGePoint3d centre(translation[0], translation[1], translation[2]);
    auto carrier = std::make_unique<AcDbEllipse>(centre, AcGeVector3d::kZAxis, AcGeVector3d::kXAxis,
                                                 0.5, 0.0, 6.283185307179586);
    AcGeMatrix3d turn;
    turn.setToRotation(rotation[3], AcGeVector3d(rotation[0], rotation[1], rotation[2]), centre);
    carrier->transformBy(turn);
    CCoordSystemMgr::mapSelectedToWorld(carrier.get());
    copyPoint(carrier->center(), origin);
    copyVector(carrier->majorAxis(), xDirection);
    copyVector(carrier->minorAxis(), yDirection);
}
