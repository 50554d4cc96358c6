// Small services the parts of the editor share.
#include "host.h"

#include <arx/acdb.h>
#include <arx/dbmain.h>
#include <arx/dxfkind.h>
#include <win/transcript.h>

#include <cwctype>

namespace qelhost {

std::wstring upper(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out)
        c = wchar_t(std::towupper(c));
    return out;
}

std::optional<std::wstring> askUser(const std::wstring& prompt, bool wholeLine) {
    win::Transcript::instance().print(prompt);
    std::optional<std::wstring> answer = input().ask(prompt, wholeLine);
    if (!answer) win::Transcript::instance().print(L"*Cancel*\n");
    return answer;
}

AcGeMatrix3d ucsToWorld() {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    if (db == nullptr) return AcGeMatrix3d::kIdentity;
    const AcGeVector3d x = db->ucsxdir(), y = db->ucsydir();
    AcGeMatrix3d m;
    m.setCoordSystem(db->ucsorg(), x, y, x.crossProduct(y));
    return m;
}

AcGePoint3d toWorld(const AcGePoint3d& ucsPoint) {
    return ucsToWorld() * ucsPoint;
}

std::vector<AcDbObjectId> drawingEntities() {
    std::vector<AcDbObjectId> ids;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    if (db == nullptr) return ids;
    AcDbBlockTableRecord* space = nullptr;
    if (acdbOpenObject(space, db->modelSpaceId(), AcDb::kForRead) != Acad::eOk) return ids;
    AcDbBlockTableRecordIterator* it = nullptr;
    if (space->newIterator(it) == Acad::eOk) {
        for (; !it->done(); it->step()) {
            AcDbObjectId id;
            if (it->getEntityId(id) == Acad::eOk) ids.push_back(id);
        }
        delete it;
    }
    space->close();
    return ids;
}

std::wstring entityKind(const AcDbEntity* entity) {
    const AcDbDxfKind* kind = acdbDxfKindOf(entity->isA());
    if (kind != nullptr && kind->dxfName != nullptr) return kind->dxfName;
    return upper(entity->isA()->name());
}

} // namespace qelhost
