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
// The same, with the data of a record made once for many objects (see QelSharedXrecord).
bool QelCreateXrecord(AcDbObject* object, LPCWSTR key, const AcDbXrecord& data);

// One tag for many objects, as a cloud's points carry: the chain is checked and packed once and
// every object's record shares the packed data. The drawing saves as with a record per object.
class QelSharedXrecord {
public:
    // The chain stays the caller's; a chain the host refuses is reported here, once.
    QelSharedXrecord(LPCWSTR key, const resbuf* chain);
    bool Apply(AcDbObject* object) const { return QelCreateXrecord(object, m_key, m_data); }

private:
    LPCWSTR m_key;
    AcDbXrecord m_data;
};
// On an open object: the X-record chain under key, or null.
resbuf* QelGetXrecordChain(AcDbObject* object, LPCWSTR key);
// Appends one text (group 1000) to the object's extended data of the application, registering
// the application when the object has none yet.
void AddXData(AcDbObject* object, LPCWSTR text);
