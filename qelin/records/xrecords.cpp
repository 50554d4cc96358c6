#include "xrecords.h"

#include "foundation/error_report.h"

#include <arx/aced.h>

namespace {

// The X-record under key on an object open for write, filled by fill(record); false when it
// could not be made. A fill that fails is reported, and the record stays, empty.
template <class Fill>
bool createXrecord(AcDbObject* object, LPCWSTR key, Fill fill) {
    if (IsBadWritePtr(object, sizeof(AcDbObject))) {
        acedAlert(L"CX: Bad object pointer.");
        return false;
    }
    if (!object->isWriteEnabled()) {
        acedAlert(L"CX: Object pointer not write enabled.");
        return false;
    }
    Acad::ErrorStatus es = object->createExtensionDictionary();
    if (es != Acad::eOk && es != Acad::eAlreadyInDb) {
        QelAlertStatusFormat(es, L"CX: Could not create extension dictionary\n<%s>", key);
        return false;
    }
    AcDbDictionary* dictionary = nullptr;
    es = acdbOpenObject(dictionary, object->extensionDictionary(), AcDb::kForWrite);
    if (es != Acad::eOk) {
        QelAlertStatusFormat(es, L"CX: Could not open dictionary\n<%s>", key);
        return false;
    }
    auto* record = new AcDbXrecord;
    AcDbObjectId recordId;
    es = dictionary->setAt(key, record, recordId);
    if (es != Acad::eOk) {
        dictionary->close();
        delete record;
        QelAlertStatusFormat(es, L"CX: Could not setAt dictionary \n<%s>", key);
        return false;
    }
    es = dictionary->close();
    if (es != Acad::eOk) {
        record->close();
        QelAlertStatusFormat(es, L"CX: Could not close dictionary\n<%s>", key);
        return false;
    }
    es = fill(*record);
    if (es != Acad::eOk)
        QelAlertStatusFormat(es, L"CX: Could not setFromRbChain dictionary\n<%s>", key);
    record->close();
    return true;
}

} // namespace

bool QelCreateXrecord(AcDbObject* object, LPCWSTR key, resbuf* chain) {
    return createXrecord(object, key,
                         [chain](AcDbXrecord& record) { return record.setFromRbChain(*chain); });
}

bool QelCreateXrecord(AcDbObject* object, LPCWSTR key, const AcDbXrecord& data) {
    return createXrecord(object, key,
                         [&data](AcDbXrecord& record) { return record.copyFrom(&data); });
}

QelSharedXrecord::QelSharedXrecord(LPCWSTR key, const resbuf* chain) : m_key(key) {
    // Refused, the shared data stays empty, as each record made from the chain would.
    if (chain == nullptr) return;
    if (const Acad::ErrorStatus es = m_data.setFromRbChain(*chain); es != Acad::eOk)
        QelAlertStatusFormat(es, L"CX: Could not setFromRbChain dictionary\n<%s>", key);
}

resbuf* QelGetXrecordChain(AcDbObject* object, LPCWSTR key) {
    if (IsBadReadPtr(object, sizeof(AcDbObject))) {
        acedAlert(L"GXRC: Bad read pointer");
        return nullptr;
    }
    if (IsBadStringPtrW(key, 256)) {
        acedAlert(L"GXRC: Bad string pointer");
        return nullptr;
    }
    const AcDbObjectId dictionaryId = object->extensionDictionary();
    if (dictionaryId.isNull()) return nullptr;
    AcDbDictionary* dictionary = nullptr;
    if (acdbOpenObject(dictionary, dictionaryId, AcDb::kForRead) != Acad::eOk) return nullptr;
    AcDbObject* found = nullptr;
    const Acad::ErrorStatus es = dictionary->getAt(key, found, AcDb::kForRead);
    dictionary->close();
    if (es != Acad::eOk) return nullptr;
    auto* record = AcDbXrecord::cast(found);
    resbuf* chain = nullptr;
    const Acad::ErrorStatus chained = record ? record->rbChain(&chain) : Acad::eWrongObjectType;
    found->close();
    if (chained != Acad::eOk || !chain) {
        QelAlertStatusFormat(chained, L"rbChain failed <%s>", key);
        return nullptr;
    }
    return chain;
}

bool XRecords::Set(ads_name entity, LPCWSTR key, resbuf* chain) {
    if (!chain) {
        acutPrintf(L"\n Invalid resbuf list detected");
        return false;
    }
    AcDbObjectId id;
    Acad::ErrorStatus es = acdbGetObjectId(id, entity);
    if (es != Acad::eOk) {
        QelAlertStatus(es, L"acdbGetObjectId failed");
        return false;
    }
    AcDbEntity* object = nullptr;
    es = acdbOpenAcDbEntity(object, id, AcDb::kForWrite);
    if (es != Acad::eOk) {
        QelAlertStatus(es, L"X_Records::Set acdbOpenAcDbEntity failed!");
        return false;
    }
    const bool made = QelCreateXrecord(object, key, chain);
    if (!made) acutPrintf(L"\n Could not CreateXrecord");
    object->close();
    return made;
}

resbuf* XRecords::Get(ads_name entity, LPCWSTR key) {
    AcDbObjectId id;
    const Acad::ErrorStatus es = acdbGetObjectId(id, entity);
    if (es != Acad::eOk) {
        QelAlertStatus(es, L"acdbGetObjectId failed");
        return nullptr;
    }
    AcDbEntity* object = nullptr;
    if (acdbOpenAcDbEntity(object, id, AcDb::kForRead) != Acad::eOk) return nullptr;
    resbuf* chain = QelGetXrecordChain(object, key);
    object->close();
    return chain;
}

void AddXData(AcDbObject* object, LPCWSTR text) {
    AcDbObjectId id;
    ads_name name = {0, 0};
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    const bool named = db && db->getAcDbObjectId(id, false, object->handle()) == Acad::eOk &&
                       acdbGetAdsName(name, id) == Acad::eOk;
    if (!named) {
        if (!QelErrorsSuppressed()) {
            AfxMessageBox(L"Error getting ads_name for object");
            CString message;
            message.Format(L"Error adding xdata to %s", text);
            AfxMessageBox(message);
        }
        return;
    }
    Acad::ErrorStatus es = acdbGetObjectId(id, name);
    if (es != Acad::eOk) {
        acutPrintf(L"\n acdbGetObjectId failed");
        acutPrintf(L"\n en==(%lx,%lx), retStat==%d\n", name[0], name[1], int(es));
        acutPrintf(L"Error selecting object\n");
        return;
    }
    AcDbObject* target = nullptr;
    es = acdbOpenObject(target, id, AcDb::kForRead);
    if (es != Acad::eOk) {
        acutPrintf(L" acdbOpenObject failed: ename:(%lx,%lx), mode:%d retStat:%d", name[0], name[1],
                   int(AcDb::kForRead), int(es));
        acutPrintf(L"Error selecting object\n");
        return;
    }
    resbuf* chain = target->xData(QEL_XDATA_APP);
    resbuf* last = chain;
    if (!chain) {
        acdbRegApp(QEL_XDATA_APP);
        chain = last = acutNewRb(1001);
        last->resval.rstring = acutNewString(QEL_XDATA_APP);
    } else {
        while (last->rbnext)
            last = last->rbnext;
    }
    last->rbnext = acutNewRb(1000);
    last->rbnext->resval.rstring = acutNewString(text);
    target->upgradeOpen();
    target->setXData(chain);
    target->close();
    acutRelRb(chain);
}
