#include "block_explode.h"

#include "foundation/error_report.h"
#include "foundation/string_ring.h"
#include "import/object_dispatch.h"
#include "import/qel_job.h"
#include "import/read_qel_file.h"
#include "objectfile/param_read.h"
#include "records/member_record.h"

#include <arx/acdb.h>
#include <arx/aced.h>
#include <qel/qel.h>

#include <cwchar>
#include <fstream>

namespace {

// Whether the entity's chain names it a block reference.
bool isBlockReference(ads_name entity) {
    resbuf* chain = acdbEntGet(entity);
    bool found = false;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext)
        if (rb->restype == 0) {
            found = rb->resval.rstring && std::wcscmp(rb->resval.rstring, L"INSERT") == 0;
            break;
        }
    acutRelRb(chain);
    return found;
}

bool canRead(const CString& path) {
    std::ifstream in(QelNarrowFromWide(path), std::ios::binary);
    return in.is_open();
}

} // namespace

int CQelBlkExplode::Explode() {
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, selectionSet) != RTNORM) {
        acutPrintf(L"\nNothing selected.");
        acedAlert(L"Nothing selected.");
        acedSSFree(selectionSet);
        return status;
    }
    if (acedSSLength(selectionSet, &count) != RTNORM) {
        acutPrintf(L"\nInvalid selected set.");
        acedSSFree(selectionSet);
        return status;
    }
    for (Adesk::Int32 i = 0; i < count; ++i) {
        AcDbObjectId id;
        Acad::ErrorStatus es = Acad::eInvalidInput;
        if (acedSSName(selectionSet, i, current) == RTNORM) es = acdbGetObjectId(id, current);
        if (es != Acad::eOk) {
            QelAlertStatus(es, L"getting object id");
            break;
        }
        if (!isBlockReference(current)) continue;
        QelMemberRecord record;
        record.objectIndex = 0;
        const bool tagged = record.Load(current);
        objectIndex = record.objectIndex;
        // A block reference the import didn't make is none of this command's business.
        if (tagged) status = ReplaceReference(current, objectIndex);
    }
    acedSSFree(selectionSet);
    return status;
}

int CQelBlkExplode::ReplaceReference(ads_name entity, int index) {
    QelMemberRecord record;
    const bool loaded = record.Load(entity);
    const CString path = record.filePath;
    if (loaded && acdbEntDel(entity) != RTNORM) {
        AfxMessageBox(L"Error deleting selected entity");
        return 1;
    }
    // The reference is gone before the file is looked at: when the object cannot be made again,
    // the reference stays deleted.
    if (!canRead(path)) {
        AfxMessageBox(L"The qel creation file for this object cannot be found");
        return 0;
    }
    try {
        QelInit(0, 0, QelInitWords);
        QelReader reader;
        reader.Open(QelNarrowFromWide(path));
        // Given up when its handling ends, whether the creator finishes or throws.
        QelObjectRef object(reader.ReadObject(unsigned(index)));
        if (!object) {
            AfxMessageBox(L"Error reading object creation qel file");
            reader.Close();
            return 1;
        }
        QelJob job;
        DispatchObject(job, object.get(), nullptr, 1, unsigned(index), &path);
        object.reset();
        reader.Close();
    } catch (const QelException& e) {
        AfxMessageBox(QelWideFromNarrow(e.GetReason()), MB_ICONEXCLAMATION);
    } catch (...) {
        AfxMessageBox(L"Caught unknown exception opening qel file.", MB_ICONEXCLAMATION);
    }
    return 0;
}

void QelXplodeCommand() {
    CQelBlkExplode explode;
    explode.Explode();
}
