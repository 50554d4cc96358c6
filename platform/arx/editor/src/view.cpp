// ZOOM (extents) and ERASE.
#include "processor.h"

#include <arx/acdb.h>
#include <win/transcript.h>

namespace qelhost {

namespace {

int zoom(CommandContext& ctx) {
    const Option kOptions[] = {{L"E", L"EXTENTS"}, {L"A", L"ALL"}};
    std::optional<std::wstring> word =
        ctx.word(L"Specify corner of window, enter a scale factor, or [All/Extents] <real time>: ");
    if (!word) return RTCAN;
    if (matchOption(*word, kOptions) < 0) {
        ctx.invalid(L"Only All and Extents are supported.");
        return RTERROR;
    }
    AcDbExtents box;
    for (AcDbObjectId id : drawingEntities()) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        AcDbExtents extents;
        if (entity->getGeomExtents(extents) == Acad::eOk) box.addExt(extents);
        entity->close();
    }
    currentDocument()->view = box;
    return RTNORM;
}

// Erases what the answers select: selection sets, entity names or handles, until Enter.
int erase(CommandContext& ctx) {
    std::vector<AcDbObjectId> ids;
    for (;;) {
        std::optional<Token> token = ctx.next(L"Select objects: ");
        if (!token) return RTCAN;
        if (token->kind == Token::kText && token->text.empty()) break;
        if (token->kind == Token::kSelection) {
            const SelectionSet* set = findSelection(token->name);
            if (set == nullptr) {
                ctx.invalid(L"Invalid selection set.");
                return RTERROR;
            }
            ids.insert(ids.end(), set->begin(), set->end());
            continue;
        }
        ads_name name = {token->name[0], token->name[1]};
        if (token->kind == Token::kText && acdbHandEnt(token->text.c_str(), name) != RTNORM) {
            ctx.invalid(L"No entity with handle " + token->text + L".");
            continue;
        }
        AcDbObjectId id;
        if ((token->kind != Token::kText && token->kind != Token::kEntity) ||
            acdbGetObjectId(id, name) != Acad::eOk) {
            ctx.invalid(L"Invalid selection.");
            return RTERROR;
        }
        ids.push_back(id);
    }
    int erased = 0;
    for (AcDbObjectId id : ids) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForWrite) != Acad::eOk) continue;
        if (entity->erase() == Acad::eOk) ++erased;
        entity->close();
    }
    win::Transcript::instance().print(std::to_wstring(erased) + L" erased\n");
    return RTNORM;
}

const ProcessorCommand kCommands[] = {
    {L"ZOOM", zoom},
    {L"ERASE", erase},
};

} // namespace

std::span<const ProcessorCommand> viewCommands() {
    return kCommands;
}

} // namespace qelhost
