#include "export/qel_out_object.h"

#include <cwctype>

std::wstring QelLayerKey(LPCWSTR name) {
    std::wstring key(name ? name : L"");
    for (wchar_t& c : key)
        c = static_cast<wchar_t>(std::towlower(c));
    return key;
}

// An entity enters a list once; the first record of an id is the one found.
TaggedEntityRec& QelOutObject::addTagged(std::unique_ptr<TaggedEntityRec> record) {
    taggedEntities.push_back(std::move(record));
    TaggedEntityRec& added = *taggedEntities.back();
    m_taggedById.emplace(added.entityId, &added);
    return added;
}

UntaggedEntityRec& QelOutObject::addUntagged(std::unique_ptr<UntaggedEntityRec> record) {
    untaggedEntities.push_back(std::move(record));
    UntaggedEntityRec& added = *untaggedEntities.back();
    m_untaggedById.emplace(added.entityId, &added);
    return added;
}

void QelOutObject::clearEntities() {
    m_taggedById.clear();
    m_untaggedById.clear();
    taggedEntities.clear();
    untaggedEntities.clear();
}

TaggedEntityRec* QelOutObject::findTagged(const AcDbObjectId& id) const {
    const auto found = m_taggedById.find(id);
    return found == m_taggedById.end() ? nullptr : found->second;
}

UntaggedEntityRec* QelOutObject::findUntagged(const AcDbObjectId& id) const {
    const auto found = m_untaggedById.find(id);
    return found == m_untaggedById.end() ? nullptr : found->second;
}
