#include "export/selection.h"

#include <arx/aced.h>

QelSelection::QelSelection(const ACHAR* mode, LPCWSTR layer) {
    resbuf layerItem{}, kindItem{};
    kindItem.restype = 0;
    kindItem.resval.rstring = const_cast<ACHAR*>(L"*");
    kindItem.rbnext = &layerItem;
    layerItem.restype = 8;
    layerItem.resval.rstring = const_cast<ACHAR*>(layer);
    m_status = acedSSGet(mode, nullptr, nullptr, &kindItem, m_set);
}

QelSelection::~QelSelection() {
    if (ok()) acedSSFree(m_set);
}

bool QelSelection::length(Adesk::Int32& count) const {
    count = 0;
    return ok() && acedSSLength(m_set, &count) == RTNORM;
}

bool QelSelection::entity(Adesk::Int32 index, ads_name name) const {
    return ok() && acedSSName(m_set, index, name) == RTNORM;
}

bool QelLayerHasEntities(LPCWSTR layer) {
    Adesk::Int32 count = 0;
    return QelSelection(L"_X", layer).length(count) && count > 0;
}
