// What rides on an imported entity: X-records under a key of its extension dictionary, and
// extended data texts under the application "Tovi_Technologies".
#pragma once

#include <arx/arx.h>
#include <win/win.h>

inline constexpr const ACHAR* QEL_XDATA_APP = L"Tovi_Technologies";

class XRecords {
public:
    virtual ~XRecords() = default;

    // Stores the chain as the X-record under key, replacing one of the same key. The chain stays
    // the caller's.
    bool Set(ads_name entity, LPCWSTR key, resbuf* chain);
    // The chain of the X-record under key, for the caller to free with acutRelRb; null if none.
    resbuf* Get(ads_name entity, LPCWSTR key);
};

// On an object open for write: the X-record under key, made or replaced.
bool QelCreateXrecord(AcDbObject* object, LPCWSTR key, resbuf* chain);
// On an open object: the X-record chain under key, or null.
resbuf* QelGetXrecordChain(AcDbObject* object, LPCWSTR key);
// Appends one text (group 1000) to the object's extended data of the application, registering
// the application when the object has none yet.
void AddXData(AcDbObject* object, LPCWSTR text);
