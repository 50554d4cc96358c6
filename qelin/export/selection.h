// Selection sets of the export: every entity of the drawing or of one layer (by the filter of
// kind "*" and a layer pattern), or what the user picks. The set is freed with the object.
#pragma once

#include <arx/adsdef.h>
#include <win/win.h>

class QelSelection {
public:
    // mode "_X" selects by the filter over the drawing; null asks the user.
    QelSelection(const ACHAR* mode, LPCWSTR layer = L"*");
    ~QelSelection();
    QelSelection(const QelSelection&) = delete;
    QelSelection& operator=(const QelSelection&) = delete;

    int status() const { return m_status; } // of the selection call
    bool ok() const { return m_status == RTNORM; }
    // The count; false when the set has no length.
    bool length(Adesk::Int32& count) const;
    bool entity(Adesk::Int32 index, ads_name name) const;

private:
    ads_name m_set = {0, 0};
    int m_status = RTERROR;
};

// True when the layer holds at least one entity.
bool QelLayerHasEntities(LPCWSTR layer);
