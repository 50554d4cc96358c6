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

std::string narrow(std::wstring_view text) {
    std::string out;
    for (wchar_t c : text) {
        const auto u = static_cast<char32_t>(c);
        if (u < 0x80) {
            out += char(u);
        } else if (u < 0x800) {
            out += char(0xC0 | (u >> 6));
            out += char(0x80 | (u & 0x3F));
        } else if (u < 0x10000) {
            out += char(0xE0 | (u >> 12));
            out += char(0x80 | ((u >> 6) & 0x3F));
            out += char(0x80 | (u & 0x3F));
        } else {
            out += char(0xF0 | (u >> 18));
            out += char(0x80 | ((u >> 12) & 0x3F));
            out += char(0x80 | ((u >> 6) & 0x3F));
            out += char(0x80 | (u & 0x3F));
        }
    }
    return out;
}

std::wstring widen(std::string_view text) {
    std::wstring out;
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
        char32_t u = extra == 0 ? c : c & (0x3F >> extra);
        ++i;
        for (; extra > 0 && i < text.size(); --extra, ++i)
            u = (u << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
        out += wchar_t(u);
    }
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
