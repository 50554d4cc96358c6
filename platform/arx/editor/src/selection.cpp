// Selection sets: by filter over the whole drawing ("_X"), or picked by the user at the prompt
// as the commands pick (select.cpp).
#include "prompts.h"
#include "wildcard.h"

#include <arx/acdb.h>

#include <algorithm>
#include <map>

namespace qelhost {

namespace {

// Selection-set names carry this mark in their second half, so that entity names passed by
// mistake are refused.
constexpr Adesk::IntPtr kSetMark = 0x5e15e7;

struct Sets {
    std::map<Adesk::IntPtr, SelectionSet> sets;
    Adesk::IntPtr next = 1;
};

Sets& sets() {
    static Sets instance;
    return instance;
}

struct Filter {
    std::vector<std::wstring> kinds, layers;
};

// Filters on group 0 (kind; RTDXF0 as acutBuildList writes it) and 8 (layer); any other group
// is refused.
bool readFilter(const resbuf* filter, Filter& out) {
    for (const resbuf* rb = filter; rb != nullptr; rb = rb->rbnext) {
        const bool kind = rb->restype == 0 || rb->restype == RTDXF0;
        if ((!kind && rb->restype != 8) || rb->resval.rstring == nullptr) return false;
        (kind ? out.kinds : out.layers).emplace_back(rb->resval.rstring);
    }
    return true;
}

bool passes(const Filter& filter, AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    const std::wstring kind = entityKind(entity);
    ACHAR* layer = entity->layer();
    const std::wstring layerName = layer ? layer : L"";
    acutDelString(layer);
    entity->close();
    for (const std::wstring& pattern : filter.kinds)
        if (!wildcardMatch(kind, pattern)) return false;
    for (const std::wstring& pattern : filter.layers)
        if (!wildcardMatch(layerName, pattern)) return false;
    return true;
}

void nameSet(SelectionSet set, ads_name ss) {
    const Adesk::IntPtr id = sets().next++;
    sets().sets[id] = std::move(set);
    ss[0] = id;
    ss[1] = kSetMark;
}

// Picks at the prompt as the commands do; nothing when cancelled.
std::optional<SelectionSet> pick(const Filter& filter) {
    CommandContext ctx(nullptr);
    bool cancelled = false;
    const SelectionSet chosen = selectObjects(ctx, cancelled);
    if (cancelled) return std::nullopt;
    SelectionSet set;
    for (AcDbObjectId id : chosen)
        if (passes(filter, id)) set.push_back(id);
    return set;
}

} // namespace

const SelectionSet* findSelection(const ads_name ss) {
    if (ss == nullptr || ss[1] != kSetMark) return nullptr;
    auto it = sets().sets.find(ss[0]);
    return it == sets().sets.end() ? nullptr : &it->second;
}

void clearSelections() {
    sets().sets.clear();
    rememberSelection({});
    setLastPoint(AcGePoint3d::kOrigin);
}

} // namespace qelhost

using namespace qelhost;

int acedSSGet(const ACHAR* str, const void*, const void*, const resbuf* filter, ads_name ss) {
    if (ss == nullptr || acdbHostApplicationServices()->workingDatabase() == nullptr)
        return RTERROR;
    Filter f;
    if (!readFilter(filter, f)) return RTERROR;
    SelectionSet set;
    if (str == nullptr || *str == L'\0') {
        std::optional<SelectionSet> picked = pick(f);
        if (!picked) return RTCAN;
        set = std::move(*picked);
    } else if (upper(str) == L"_X" || upper(str) == L"X") {
        for (AcDbObjectId id : drawingEntities())
            if (passes(f, id)) set.push_back(id);
    } else {
        return RTERROR;
    }
    if (set.empty()) return RTERROR;
    nameSet(std::move(set), ss);
    return RTNORM;
}

int acedSSLength(const ads_name ss, Adesk::Int32* len) {
    const SelectionSet* set = findSelection(ss);
    if (set == nullptr || len == nullptr) return RTERROR;
    *len = Adesk::Int32(set->size());
    return RTNORM;
}

int acedSSName(const ads_name ss, Adesk::Int32 i, ads_name entres) {
    const SelectionSet* set = findSelection(ss);
    if (set == nullptr || i < 0 || std::size_t(i) >= set->size()) return RTERROR;
    return acdbGetAdsName(entres, (*set)[std::size_t(i)]) == Acad::eOk ? RTNORM : RTERROR;
}

int acedSSFree(const ads_name ss) {
    if (findSelection(ss) == nullptr) return RTERROR;
    sets().sets.erase(ss[0]);
    return RTNORM;
}
