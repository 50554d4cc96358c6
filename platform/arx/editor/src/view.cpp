// ZOOM (extents) and ERASE.
#include "prompts.h"

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
    // The view is the drawing's box; a headless host only says what it shows.
    auto text = [](const AcGePoint3d& p) {
        return std::to_wstring(p.x) + L"," + std::to_wstring(p.y) + L"," + std::to_wstring(p.z);
    };
    win::Transcript::instance().print(box.isEmpty() ? L"The drawing is empty.\n"
                                                    : L"View: " + text(box.minPoint()) + L" to " +
                                                          text(box.maxPoint()) + L"\n");
    return RTNORM;
}

// Erases what "Select objects: " chooses.
int erase(CommandContext& ctx) {
    bool cancelled = false;
    const SelectionSet ids = selectObjects(ctx, cancelled);
    if (cancelled) return RTCAN;
    int erased = 0;
    for (AcDbObjectId id : ids) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForWrite) != Acad::eOk) continue;
        if (eraseEntity(*entity) == Acad::eOk) ++erased;
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
