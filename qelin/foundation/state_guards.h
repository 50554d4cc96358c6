// The host state that a run changes through the command line, saved on the stack of the driver
// and put back on every way out: system variables, the current layer and the UCS. Each guard
// has an explicit save and restore; its destructor restores when nobody did. Beside them, the
// short command sequences for layers and the UCS that the runs use.
#pragma once

#include <arx/adsdef.h>
#include <win/win.h>

// Trace lines of the guards go to a debugging channel that prints nothing unless a sink is set.
using QelTraceSink = void (*)(const wchar_t* text);
void QelSetTraceSink(QelTraceSink sink);
void QelTrace(const wchar_t* text);

// CLAYER, CMDDIA, CMDECHO, OSMODE, UCSFOLLOW and UCSICON. Save keeps all six and then quiets the
// host: CMDDIA, CMDECHO, OSMODE, UCSFOLLOW 0 and UCSICON 2.
class CAutoCADSettings {
public:
    CAutoCADSettings();
    virtual ~CAutoCADSettings();
    CAutoCADSettings(const CAutoCADSettings&) = delete;
    CAutoCADSettings& operator=(const CAutoCADSettings&) = delete;
    void Save();
    void Restore();

private:
    resbuf* m_values[6];
    unsigned char m_armed = 0;
};

class CAutoCADLayer {
public:
    CAutoCADLayer();
    virtual ~CAutoCADLayer();
    CAutoCADLayer(const CAutoCADLayer&) = delete;
    CAutoCADLayer& operator=(const CAutoCADLayer&) = delete;
    void Save();
    void Restore();

private:
    resbuf* m_layer;
    unsigned char m_armed = 0;
};

// The UCS as three world points: the origin and points on its X and Y axes. A frame that has
// degenerated comes back as the world.
class CAutoCADUCS {
public:
    CAutoCADUCS() = default;
    virtual ~CAutoCADUCS();
    CAutoCADUCS(const CAutoCADUCS&) = delete;
    CAutoCADUCS& operator=(const CAutoCADUCS&) = delete;
    void Save();
    void Restore();

private:
    ads_point m_origin = {0.0, 0.0, 0.0};
    ads_point m_xPoint = {1.0, 0.0, 0.0};
    ads_point m_yPoint = {0.0, 1.0, 0.0};
    unsigned char m_armed = 0;
};

// True when there is a working database and the layer table has the name.
bool QelLayerExists(LPCWSTR name);
// Thaws and sets the layer current; false without a command when the layer doesn't exist,
// else true when the command succeeded.
bool QelSetCurrentLayer(LPCWSTR name);
void QelLayerOff(LPCWSTR name);
// The host asks before turning the current layer off; the sequence answers yes.
void QelCurrentLayerOff(LPCWSTR name);
void QelFreezeLayer(LPCWSTR name);
// Erases every entity on the layer. True when there was nothing to do or the erase worked.
bool QelEraseLayerContents(LPCWSTR name);

void QelUcsWorld();
// From the world UCS: origin at `origin`, Z towards `zPoint`.
void QelUcsZAxis(const ads_point origin, const ads_point zPoint);
// From the world UCS: the frame through three points. The status of the second command.
int QelUcs3Points(const ads_point origin, const ads_point xPoint, const ads_point yPoint);
void QelUcsOrigin(const ads_point origin);

void QelUcsToWorld(const ads_point in, ads_point out);
void QelWorldToUcs(const ads_point in, ads_point out);
