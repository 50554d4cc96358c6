// Changing properties of selected entities: CHPROP and -CHANGE's Properties (colour, layer,
// thickness). Entities without a thickness keep theirs unchanged, as at the host.
#include "prompts.h"

#include <arx/dbpl.h>
#include <arx/dbpoly.h>

#include <cmath>
#include <cwchar>

namespace qelhost {

namespace {

// The thickness of the entity kinds that have one; false for the others.
template <class... Kinds>
bool setThicknessOf(AcDbEntity& entity, double value) {
    bool done = false;
    (
        [&] {
            if (auto* e = Kinds::cast(&entity); e != nullptr && !done)
                done = e->setThickness(value) == Acad::eOk;
        }(),
        ...);
    return done;
}

bool setThickness(AcDbEntity& entity, double value) {
    return setThicknessOf<AcDbLine, AcDbCircle, AcDbArc, AcDbPoint, AcDbText, AcDbPolyline,
                          AcDb2dPolyline, AcDbSolid, AcDbTrace>(entity, value);
}

// Colour names as the host's colour prompt takes them.
struct ColourName {
    const wchar_t* name;
    Adesk::UInt16 index;
};
const ColourName kColours[] = {
    {L"BYBLOCK", 0}, {L"RED", 1},     {L"YELLOW", 2}, {L"GREEN", 3},     {L"CYAN", 4},
    {L"BLUE", 5},    {L"MAGENTA", 6}, {L"WHITE", 7},  {L"BYLAYER", 256},
};

std::optional<Adesk::UInt16> colourOf(const std::wstring& text) {
    const std::wstring word = upper(text);
    for (const ColourName& c : kColours)
        if (word == c.name) return c.index;
    wchar_t* end = nullptr;
    const long index = std::wcstol(text.c_str(), &end, 10);
    if (!text.empty() && *end == L'\0' && index >= 0 && index <= 256) return Adesk::UInt16(index);
    return std::nullopt;
}

bool layerExists(const std::wstring& name) {
    AcDbLayerTable* table = nullptr;
    if (acdbHostApplicationServices()->workingDatabase()->getLayerTable(table, AcDb::kForRead) !=
        Acad::eOk)
        return false;
    const bool has = table->has(name.c_str());
    table->close();
    return has;
}

// Asks property after property until Enter.
int properties(CommandContext& ctx, const SelectionSet& set) {
    enum { kColour, kLayer, kThickness };
    const Option kProperties[] = {{L"C", L"COLOR"}, {L"LA", L"LAYER"}, {L"T", L"THICKNESS"}};
    for (;;) {
        std::optional<std::wstring> word =
            ctx.word(L"Enter property to change [Color/LAyer/Thickness]: ");
        if (!word) return RTCAN;
        if (word->empty()) return RTNORM;
        switch (matchOption(*word, kProperties)) {
        case kColour:
            for (;;) {
                std::optional<std::wstring> answer = ctx.word(L"Enter new color <BYLAYER>: ");
                if (!answer) return RTCAN;
                const auto index =
                    answer->empty() ? std::optional<Adesk::UInt16>(256) : colourOf(*answer);
                if (!index) {
                    ctx.invalid(L"Invalid color: give 0 to 256, BYLAYER, BYBLOCK or a color "
                                L"name.");
                    continue;
                }
                forEachEntity(set,
                              [&](AcDbEntity& e) { return e.setColorIndex(*index) == Acad::eOk; });
                break;
            }
            break;
        case kLayer:
            for (;;) {
                std::optional<std::wstring> answer = ctx.word(L"Enter new layer name: ");
                if (!answer) return RTCAN;
                if (answer->empty()) break;
                if (!layerExists(*answer)) {
                    ctx.invalid(L"Layer \"" + *answer + L"\" not found.");
                    continue;
                }
                forEachEntity(
                    set, [&](AcDbEntity& e) { return e.setLayer(answer->c_str()) == Acad::eOk; });
                break;
            }
            break;
        case kThickness: {
            double value = 0.0;
            if (askDistance(ctx, L"Specify new thickness: ", value, nullptr) == Answer::kCancel)
                return RTCAN;
            const int changed =
                forEachEntity(set, [&](AcDbEntity& e) { return setThickness(e, value); });
            if (changed < int(set.size()))
                tell(std::to_wstring(int(set.size()) - changed) +
                     L" object(s) have no thickness and were not changed.\n");
            break;
        }
        default:
            ctx.invalid(L"Invalid option keyword.");
        }
    }
}

int chprop(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    return set ? properties(ctx, *set) : status;
}

int change(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    const Option kProperties[] = {{L"P", L"PROPERTIES"}};
    for (;;) {
        std::optional<std::wstring> word = ctx.word(L"Specify change point or [Properties]: ");
        if (!word) return RTCAN;
        if (word->empty()) return RTNORM;
        if (matchOption(*word, kProperties) == 0) return properties(ctx, *set);
        ctx.invalid(L"Only Properties can be changed here; move points with MOVE.");
    }
}

const ProcessorCommand kCommands[] = {
    {L"CHPROP", chprop},
    {L"-CHANGE", change},
    {L"CHANGE", change},
};

} // namespace

std::span<const ProcessorCommand> changeCommands() {
    return kCommands;
}

} // namespace qelhost
