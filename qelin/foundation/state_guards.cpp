#include "foundation/state_guards.h"

#include <arx/acdb.h>
#include <arx/aced.h>
#include <arx/dbdatabase.h>
#include <arx/gelinear.h>

namespace {

QelTraceSink g_traceSink = nullptr;

constexpr const wchar_t* kSettingNames[6] = {L"CLAYER", L"CMDDIA",    L"CMDECHO",
                                             L"OSMODE", L"UCSFOLLOW", L"UCSICON"};

void setShort(const wchar_t* name, int value) {
    resbuf rb{};
    rb.restype = RTSHORT;
    rb.resval.rint = static_cast<short>(value);
    acedSetVar(name, &rb);
}

// A buffer that acedGetVar may fill with a string: what it held before is freed first.
void getInto(const wchar_t* name, resbuf* rb) {
    if (rb->restype == RTSTR && rb->resval.rstring) acutDelString(rb->resval.rstring);
    acedGetVar(name, rb);
}

AcGePoint3d toPoint(const ads_point p) {
    return AcGePoint3d(p[0], p[1], p[2]);
}

// Two points coincide, or the three lie on one line.
bool degenerate(const ads_point o, const ads_point x, const ads_point y) {
    const AcGePoint3d a = toPoint(o), b = toPoint(x), c = toPoint(y);
    if (a.isEqualTo(b) || b.isEqualTo(c) || a.isEqualTo(c)) return true;
    return AcGeLine3d(a, b).isColinearTo(AcGeLine3d(b, c));
}

void setPoint(ads_point p, double x, double y, double z) {
    p[0] = x;
    p[1] = y;
    p[2] = z;
}

void trans(const ads_point in, ads_point out, short from, short to) {
    resbuf rbFrom{}, rbTo{};
    rbFrom.restype = rbTo.restype = RTSHORT;
    rbFrom.resval.rint = from;
    rbTo.resval.rint = to;
    acedTrans(in, &rbFrom, &rbTo, 0, out);
}

} // namespace

void QelSetTraceSink(QelTraceSink sink) {
    g_traceSink = sink;
}

void QelTrace(const wchar_t* text) {
    if (g_traceSink) g_traceSink(text);
}

CAutoCADSettings::CAutoCADSettings() {
    for (resbuf*& value : m_values)
        value = acutNewRb(RTSTR);
}

CAutoCADSettings::~CAutoCADSettings() {
    if (m_armed) {
        QelTrace(L"CAutoCADSettings::**** AutoCAD Settings restored automatically ****");
        Restore();
    }
    for (resbuf* value : m_values)
        acutRelRb(value);
}

void CAutoCADSettings::Save() {
    m_armed = 1;
    for (int i = 0; i < 6; ++i)
        getInto(kSettingNames[i], m_values[i]);
    setShort(L"CMDDIA", 0);
    setShort(L"CMDECHO", 0);
    setShort(L"OSMODE", 0);
    setShort(L"UCSFOLLOW", 0);
    setShort(L"UCSICON", 2);
}

void CAutoCADSettings::Restore() {
    m_armed = 0;
    for (int i = 0; i < 6; ++i)
        acedSetVar(kSettingNames[i], m_values[i]);
}

CAutoCADLayer::CAutoCADLayer() : m_layer(acutNewRb(RTSTR)) {}

CAutoCADLayer::~CAutoCADLayer() {
    if (m_armed) {
        QelTrace(L"CAutoCADLayer::**** AutoCAD Layer restored automatically ****");
        Restore();
    }
    acutRelRb(m_layer);
}

void CAutoCADLayer::Save() {
    m_armed = 1;
    getInto(L"CLAYER", m_layer);
}

void CAutoCADLayer::Restore() {
    m_armed = 0;
    acedSetVar(L"CLAYER", m_layer);
}

CAutoCADUCS::~CAutoCADUCS() {
    if (m_armed) {
        QelTrace(L"CAutoCADUCS::****** AutoCAD UCS restored automatically ******");
        Restore();
    }
}

void CAutoCADUCS::Save() {
    m_armed = 1;
    const ads_point origin = {0.0, 0.0, 0.0}, xAxis = {100.0, 0.0, 0.0}, yAxis = {0.0, 100.0, 0.0};
    QelUcsToWorld(origin, m_origin);
    QelUcsToWorld(xAxis, m_xPoint);
    QelUcsToWorld(yAxis, m_yPoint);
    const bool bad = degenerate(m_origin, m_xPoint, m_yPoint);
    if (m_xPoint[0] == 0.0 && m_xPoint[1] == 0.0) m_xPoint[2] = 0.0;
    if (bad) setPoint(m_xPoint, 1.0, 0.0, 0.0);
    if (m_yPoint[0] == 0.0 && m_yPoint[1] == 0.0) m_yPoint[2] = 0.0;
    if (bad) setPoint(m_yPoint, 0.0, 1.0, 0.0);
}

void CAutoCADUCS::Restore() {
    if (degenerate(m_origin, m_xPoint, m_yPoint)) {
        setPoint(m_origin, 0.0, 0.0, 0.0);
        setPoint(m_xPoint, 1.0, 0.0, 0.0);
        setPoint(m_yPoint, 0.0, 1.0, 0.0);
    }
    QelUcs3Points(m_origin, m_xPoint, m_yPoint);
    m_armed = 0;
}

bool QelLayerExists(LPCWSTR name) {
    if (!acdbHostApplicationServices()->workingDatabase()) return false;
    resbuf* found = acdbTblSearch(L"LAYER", name, 0);
    if (!found) return false;
    acutRelRb(found);
    return true;
}

bool QelSetCurrentLayer(LPCWSTR name) {
    if (!QelLayerExists(name)) return false;
    return acedCommand(RTSTR, L"_-layer", RTSTR, L"_T", RTSTR, name, RTSTR, L"_S", RTSTR, name,
                       RTSTR, L"", RTNONE) == RTNORM;
}

void QelLayerOff(LPCWSTR name) {
    acedCommand(RTSTR, L"_-layer", RTSTR, L"_OFF", RTSTR, name, RTSTR, L"", RTNONE);
}

void QelCurrentLayerOff(LPCWSTR name) {
    acedCommand(RTSTR, L"_-layer", RTSTR, L"_OFF", RTSTR, name, RTSTR, L"_Y", RTSTR, L"", RTNONE);
}

void QelFreezeLayer(LPCWSTR name) {
    acedCommand(RTSTR, L"_-layer", RTSTR, L"_F", RTSTR, name, RTSTR, L"", RTNONE);
}

bool QelEraseLayerContents(LPCWSTR name) {
    if (!QelLayerExists(name)) return true;
    resbuf* filter = acutBuildList(RTDXF0, L"*", 8, name, 0);
    ads_name set;
    const int selected = acedSSGet(L"_X", nullptr, nullptr, filter, set);
    acutRelRb(filter);
    if (selected != RTNORM) return false;
    const int erased = acedCommand(RTSTR, L"_erase", RTPICKS, set, RTSTR, L"", RTNONE);
    acedSSFree(set);
    return erased == RTNORM;
}

void QelUcsWorld() {
    acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTNONE);
}

void QelUcsZAxis(const ads_point origin, const ads_point zPoint) {
    QelUcsWorld();
    acedCommand(RTSTR, L"_UCS", RTSTR, L"_ZA", RT3DPOINT, origin, RT3DPOINT, zPoint, RTNONE);
}

int QelUcs3Points(const ads_point origin, const ads_point xPoint, const ads_point yPoint) {
    QelUcsWorld();
    return acedCommand(RTSTR, L"_UCS", RTSTR, L"_3P", RT3DPOINT, origin, RT3DPOINT, xPoint,
                       RT3DPOINT, yPoint, RTNONE);
}

void QelUcsOrigin(const ads_point origin) {
    acedCommand(RTSTR, L"_UCS", RTSTR, L"_O", RT3DPOINT, origin, RTNONE);
}

void QelUcsToWorld(const ads_point in, ads_point out) {
    trans(in, out, 1, 0);
}

void QelWorldToUcs(const ads_point in, ads_point out) {
    trans(in, out, 0, 1);
}
