#include "member_record.h"

#include "foundation/error_report.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

namespace {

enum class Kind {
    Text,   // group 1
    Number, // group 90, all 32 bits
    Short,  // group 90, read back from its low 16 bits
    Real,   // group 40
    Handle, // group 1, as text
};

using Record = QelMemberRecord;

struct Item {
    Kind kind;
    void* (*at)(Record&);
};

#define QEL_ITEM(kind, field)                                                                      \
    {                                                                                              \
        Kind::kind, [](Record& r) -> void* { return &r.field; }                                    \
    }

// The 29 items of the chain, in their order.
const Item kItems[] = {
    QEL_ITEM(Text, filePath),        QEL_ITEM(Text, groupName),
    QEL_ITEM(Number, memberType),    QEL_ITEM(Number, objectIndex),
    QEL_ITEM(Number, context),       QEL_ITEM(Short, groupSerial),
    QEL_ITEM(Number, partIndex),     QEL_ITEM(Short, miterCount),
    QEL_ITEM(Number, spare),         QEL_ITEM(Real, majorRadius),
    QEL_ITEM(Real, minorRadius),     QEL_ITEM(Real, length),
    QEL_ITEM(Real, width),           QEL_ITEM(Real, depth),
    QEL_ITEM(Real, radius0),         QEL_ITEM(Real, radius1),
    QEL_ITEM(Real, flangeThickness), QEL_ITEM(Real, webThickness),
    QEL_ITEM(Real, centroid),        QEL_ITEM(Handle, handle0),
    QEL_ITEM(Handle, handle1),       QEL_ITEM(Real, handwheelThickness),
    QEL_ITEM(Real, handwheelOffset), QEL_ITEM(Real, handwheelRadius),
    QEL_ITEM(Real, stemThickness),   QEL_ITEM(Real, stemLength),
    QEL_ITEM(Real, direction[0]),    QEL_ITEM(Real, direction[1]),
    QEL_ITEM(Real, direction[2]),
};

#undef QEL_ITEM

short groupCode(Kind kind) {
    switch (kind) {
    case Kind::Text:
    case Kind::Handle:
        return 1;
    case Kind::Number:
    case Kind::Short:
        return 90;
    case Kind::Real:
        return 40;
    }
    return 0;
}

resbuf* itemBuffer(const Item& item, const Record& record) {
    void* field = item.at(const_cast<Record&>(record));
    resbuf* rb = acutNewRb(groupCode(item.kind));
    if (!rb) return nullptr;
    switch (item.kind) {
    case Kind::Text:
        rb->resval.rstring = acutNewString(static_cast<CString*>(field)->GetString());
        break;
    case Kind::Handle: {
        ACHAR text[20];
        static_cast<AcDbHandle*>(field)->getIntoAsciiBuffer(text, 20);
        rb->resval.rstring = acutNewString(text);
        break;
    }
    case Kind::Number:
    case Kind::Short:
        rb->resval.rlong = *static_cast<int*>(field);
        break;
    case Kind::Real:
        rb->resval.rreal = *static_cast<double*>(field);
        break;
    }
    return rb;
}

// False when the buffer isn't of the item's group: the chain is not a tag of ours.
bool readItem(const Item& item, const resbuf* rb, Record& record) {
    if (rb->restype != groupCode(item.kind)) return false;
    void* field = item.at(record);
    switch (item.kind) {
    case Kind::Text:
        *static_cast<CString*>(field) = rb->resval.rstring ? rb->resval.rstring : L"";
        break;
    case Kind::Handle:
        *static_cast<AcDbHandle*>(field) = rb->resval.rstring ? rb->resval.rstring : L"0";
        break;
    case Kind::Number:
        *static_cast<int*>(field) = rb->resval.rlong;
        break;
    case Kind::Short:
        *static_cast<int*>(field) = static_cast<short>(rb->resval.rlong & 0xFFFF);
        break;
    case Kind::Real:
        *static_cast<double*>(field) = rb->resval.rreal;
        break;
    }
    return true;
}

void nameError() {
    if (!QelErrorsSuppressed()) AfxMessageBox(L"Error getting ads_name for object");
}

} // namespace

resbuf* QelMemberRecordChain(const QelMemberRecord& record) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const Item& item : kItems) {
        resbuf* rb = itemBuffer(item, record);
        if (!rb) {
            acutRelRb(head);
            return nullptr;
        }
        *tail = rb;
        tail = &rb->rbnext;
    }
    return head;
}

bool QelMemberRecord::Store(AcDbEntity* entity) {
    return Store(static_cast<AcDbObject*>(entity));
}

bool QelMemberRecord::Store(AcDbObject* object) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbObjectId id;
    ads_name name = {0, 0};
    if (!db || db->getAcDbObjectId(id, false, object->handle()) != Acad::eOk ||
        acdbGetAdsName(name, id) != Acad::eOk)
        nameError();
    resbuf* chain = QelMemberRecordChain(*this);
    if (!chain) return false;
    XRecords records;
    records.Set(name, QEL_MEMBER_RECORD_KEY, chain);
    acutRelRb(chain);
    return true;
}

bool QelMemberRecord::Load(const AcDbObjectId& id) {
    ads_name name;
    return acdbGetAdsName(name, id) == Acad::eOk && Load(name);
}

bool QelMemberRecord::Load(ads_name entity) {
    XRecords records;
    resbuf* chain = records.Get(entity, QEL_MEMBER_RECORD_KEY);
    if (!chain) return false;
    const resbuf* rb = chain;
    bool whole = true;
    for (const Item& item : kItems) {
        if (!rb || !readItem(item, rb, *this)) {
            whole = false;
            break;
        }
        rb = rb->rbnext;
    }
    acutRelRb(chain);
    return whole;
}

int QelMemberRecord::GetType(ads_name entity) {
    Load(entity);
    return memberType;
}

int QelMemberRecord::GetObjectIndex(ads_name entity) {
    return Load(entity) ? objectIndex : 0;
}

int QelMemberRecord::GetGroupSerial(ads_name entity) {
    return Load(entity) ? groupSerial : 0;
}

int QelMemberRecord::GetPart(ads_name entity) {
    Load(entity);
    return partIndex;
}

CString QelMemberRecord::GetFile(ads_name entity) {
    Load(entity);
    return filePath;
}

int QelMemberRecord::GetMiterCount(ads_name entity, int* found) {
    *found = 0;
    if (!Load(entity)) return 0;
    *found = 1;
    return miterCount;
}

double QelMemberRecord::GetDimension(ads_name entity, double QelMemberRecord::*field, int* found) {
    *found = 0;
    if (!Load(entity)) return 0.0;
    *found = 1;
    return this->*field;
}

CString QelMemberRecord::GetHandle0(ads_name entity) {
    Load(entity);
    ACHAR text[20];
    handle0.getIntoAsciiBuffer(text, 20);
    return text;
}

CString QelMemberRecord::GetHandle1(ads_name entity) {
    Load(entity);
    ACHAR text[20];
    handle1.getIntoAsciiBuffer(text, 20);
    return text;
}

bool QelMemberRecord::GetDimensions(ads_name entity, double& l, double& w, double& d, double& r1,
                                    double& r0, int& c, int& part) {
    const bool ok = Load(entity);
    l = length, w = width, d = depth, r1 = radius1, r0 = radius0, c = context, part = partIndex;
    return ok;
}

bool QelMemberRecord::GetHandwheel(ads_name entity, double& offset, double& radius,
                                   double& thickness) {
    const bool ok = Load(entity);
    offset = handwheelOffset, radius = handwheelRadius, thickness = handwheelThickness;
    return ok;
}

bool QelMemberRecord::GetStem(ads_name entity, double& l, double& thickness) {
    const bool ok = Load(entity);
    l = stemLength, thickness = stemThickness;
    return ok;
}

bool QelMemberRecord::GetDirection(ads_name entity, double out[3]) {
    const bool ok = Load(entity);
    for (int i = 0; i < 3; ++i)
        out[i] = direction[i];
    return ok;
}

int QelComputeMaxGroupNumber() {
    resbuf* filter = acutBuildList(0, L"*", 8, L"*", 0);
    ads_name all = {0, 0};
    int highest = 0;
    if (acedSSGet(L"_X", nullptr, nullptr, filter, all) == RTNORM) {
        Adesk::Int32 count = 0;
        acedSSLength(all, &count);
        for (Adesk::Int32 i = 0; i < count; ++i) {
            ads_name entity;
            if (acedSSName(all, i, entity) != RTNORM) continue;
            QelMemberRecord record;
            const int serial = record.GetGroupSerial(entity);
            if (serial > highest) highest = serial;
        }
        acedSSFree(all);
    }
    acutRelRb(filter);
    QelDocData().maxGroupNumber = highest;
    return highest;
}
