// "Select objects: " at a terminal: ALL, Last, Previous, a Window or Crossing by two corners in
// the current UCS's plan, a LAyer name or pattern, a handle; Remove and Add switch the mode;
// Enter ends. A caller's list may also give selection sets and entity names.
#include "prompts.h"
#include "wildcard.h"

#include <algorithm>

namespace qelhost {

namespace {

SelectionSet& previous() {
    static SelectionSet set;
    return set;
}

// The entity's extents as a rectangle of the current UCS's XY plane.
bool planBox(AcDbObjectId id, AcGePoint3d& low, AcGePoint3d& high) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    AcDbExtents extents;
    const bool ok = entity->getGeomExtents(extents) == Acad::eOk && !extents.isEmpty();
    entity->close();
    if (!ok) return false;
    extents.transformBy(ucsToWorld().inverse());
    low = extents.minPoint();
    high = extents.maxPoint();
    return true;
}

// Entities inside the rectangle (window), or inside or crossing it (crossing).
std::vector<AcDbObjectId> inRectangle(const AcGePoint3d& a, const AcGePoint3d& b, bool crossing) {
    const AcGeMatrix3d toUcs = ucsToWorld().inverse();
    const AcGePoint3d p = toUcs * a, q = toUcs * b;
    const double x0 = std::min(p.x, q.x), x1 = std::max(p.x, q.x);
    const double y0 = std::min(p.y, q.y), y1 = std::max(p.y, q.y);
    std::vector<AcDbObjectId> found;
    for (AcDbObjectId id : drawingEntities()) {
        AcGePoint3d low, high;
        if (!planBox(id, low, high)) continue;
        const bool inside = low.x >= x0 && high.x <= x1 && low.y >= y0 && high.y <= y1;
        const bool touches = low.x <= x1 && high.x >= x0 && low.y <= y1 && high.y >= y0;
        if (crossing ? touches : inside) found.push_back(id);
    }
    return found;
}

std::vector<AcDbObjectId> onLayers(const std::wstring& pattern) {
    std::vector<AcDbObjectId> found;
    for (AcDbObjectId id : drawingEntities()) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        ACHAR* layer = entity->layer();
        if (wildcardMatch(layer ? layer : L"", pattern)) found.push_back(id);
        acutDelString(layer);
        entity->close();
    }
    return found;
}

// LAyer comes before Last, so that "LA" is the layer and "L" the last entity.
enum Mode { kAll, kLayer, kLast, kPrevious, kWindow, kCrossing, kRemove, kAdd };
const Option kModes[] = {{L"ALL", L"ALL"},    {L"LA", L"LAYER"}, {L"L", L"LAST"},
                         {L"P", L"PREVIOUS"}, {L"W", L"WINDOW"}, {L"C", L"CROSSING"},
                         {L"R", L"REMOVE"},   {L"A", L"ADD"}};

// An entity by handle; "#" before the handle tells a handle such as "C" or "A" from an option.
bool byHandle(const std::wstring& text, AcDbObjectId& id) {
    const std::wstring handle = !text.empty() && text.front() == L'#' ? text.substr(1) : text;
    ads_name name;
    return acdbHandEnt(handle.c_str(), name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk;
}

// The entities one answer names; nothing when the answer was cancelled.
std::optional<std::vector<AcDbObjectId>> found(CommandContext& ctx, const Token& token,
                                               bool& removing) {
    std::vector<AcDbObjectId> ids;
    if (token.kind == Token::kSelection) {
        const SelectionSet* set = findSelection(token.name);
        if (set == nullptr)
            ctx.invalid(L"Invalid selection set.");
        else
            ids = *set;
        return ids;
    }
    if (token.kind == Token::kEntity) {
        ads_name name = {token.name[0], token.name[1]};
        AcDbObjectId id;
        if (acdbGetObjectId(id, name) == Acad::eOk) ids.push_back(id);
        return ids;
    }
    if (token.kind != Token::kText) {
        ctx.invalid(L"Expects a point or Window/Last/Crossing/ALL/Previous/LAyer/Add/Remove.");
        return ids;
    }
    const int mode = token.text.starts_with(L"#") ? -1 : matchOption(token.text, kModes);
    switch (mode) {
    case kAll:
        return drawingEntities();
    case kLast: {
        ads_name last;
        AcDbObjectId id;
        if (acdbEntLast(last) == RTNORM && acdbGetObjectId(id, last) == Acad::eOk)
            ids.push_back(id);
        return ids;
    }
    case kPrevious:
        return previous();
    case kWindow:
    case kCrossing: {
        const bool crossing = mode == kCrossing;
        AcGePoint3d a, b;
        if (askPoint(ctx, L"Specify first corner: ", a) == Answer::kCancel ||
            askPoint(ctx, L"Specify opposite corner: ", b) == Answer::kCancel)
            return std::nullopt;
        return inRectangle(a, b, crossing);
    }
    case kLayer: {
        std::optional<std::wstring> pattern = ctx.word(L"Enter layer name or pattern: ");
        if (!pattern) return std::nullopt;
        return onLayers(*pattern);
    }
    case kRemove:
    case kAdd:
        removing = mode == kRemove;
        return ids;
    default:
        break;
    }
    AcDbObjectId id;
    if (byHandle(token.text, id))
        ids.push_back(id);
    else
        ctx.invalid(L"*Invalid selection*\nExpects a handle or "
                    L"Window/Last/Crossing/ALL/Previous/LAyer/Add/Remove.");
    return ids;
}

} // namespace

SelectionSet selectObjects(CommandContext& ctx, bool& cancelled) {
    SelectionSet set;
    bool removing = false;
    cancelled = false;
    for (;;) {
        std::optional<Token> token = ctx.next(removing ? L"Remove objects: " : L"Select objects: ");
        if (!token) {
            cancelled = true;
            return {};
        }
        if (token->kind == Token::kText && token->text.empty()) break;
        const bool wasRemoving = removing;
        std::optional<std::vector<AcDbObjectId>> ids = found(ctx, *token, removing);
        if (!ids) {
            cancelled = true;
            return {};
        }
        if (removing != wasRemoving) continue;
        int changed = 0;
        for (AcDbObjectId id : *ids) {
            auto at = std::find(set.begin(), set.end(), id);
            if (removing && at != set.end()) {
                set.erase(at);
                ++changed;
            } else if (!removing && at == set.end()) {
                set.push_back(id);
                ++changed;
            }
        }
        if (!ids->empty())
            tell(std::to_wstring(ids->size()) + L" found" +
                 (removing ? L", " + std::to_wstring(changed) + L" removed" : L"") + L", " +
                 std::to_wstring(set.size()) + L" total\n");
        else if (token->kind == Token::kText && matchOption(token->text, kModes) >= 0)
            tell(L"0 found\n");
    }
    if (!set.empty()) rememberSelection(set);
    return set;
}

std::optional<SelectionSet> objectsToWork(CommandContext& ctx, int& status) {
    bool cancelled = false;
    SelectionSet set = selectObjects(ctx, cancelled);
    status = cancelled ? RTCAN : RTNORM;
    if (cancelled) return std::nullopt;
    if (set.empty()) {
        tell(L"Nothing selected.\n");
        return std::nullopt;
    }
    return set;
}

Answer pickOne(CommandContext& ctx, const std::wstring& prompt, AcDbObjectId& id,
               std::span<const Option> options) {
    const Option kLast[] = {{L"L", L"LAST"}};
    for (;;) {
        std::optional<Token> token = ctx.next(prompt);
        if (!token) return Answer{Answer::kCancel};
        ads_name name = {token->name[0], token->name[1]};
        if (token->kind == Token::kEntity && acdbGetObjectId(id, name) == Acad::eOk)
            return Answer{Answer::kValue};
        if (token->kind == Token::kText && !token->text.starts_with(L"#")) {
            const int option = matchOption(token->text, options);
            if (option >= 0) return Answer{Answer::kOption, option};
            if (matchOption(token->text, kLast) == 0 && acdbEntLast(name) == RTNORM &&
                acdbGetObjectId(id, name) == Acad::eOk)
                return Answer{Answer::kValue};
        }
        if (token->kind == Token::kText && byHandle(token->text, id)) return Answer{Answer::kValue};
        ctx.invalid(L"*Invalid selection*\nExpects an entity handle or Last.");
    }
}

void rememberSelection(const SelectionSet& set) {
    previous() = set;
}

} // namespace qelhost
